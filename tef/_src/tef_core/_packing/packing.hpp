// Elements on their way between a dense vector and one that is strided, indexed or masked: what the kernels share. They
// look at no control word and report nothing.
#pragma once
#include <cstddef>
#include <cstdint>

#include "orx/base/api.hpp"
#include "orx/tef_shapes.h"

namespace orx::tef {
namespace {

template <class T>
struct ComplexElement {
  T re, im;
};

// Through the x87 unit: the value as it is, under whatever control words, but that a signalling NaN arrives quiet.
template <class T>
inline void move(const T& from, T& to) {
  long double x = from;
  asm("" : "+t"(x));
  to = static_cast<T>(x);
}
template <class T>
inline void move(const ComplexElement<T>& from, ComplexElement<T>& to) {
  move(from.re, to.re);
  move(from.im, to.im);
}

// The integers of a call as it means them: in 32 bits the low words. No vector has more elements than a pointer can
// tell apart.
template <class Int>
inline ptrdiff_t count(long long n) {
  const Int elements = static_cast<Int>(n);
  return elements < 0 ? 0 : elements > PTRDIFF_MAX ? PTRDIFF_MAX : static_cast<ptrdiff_t>(elements);
}
template <class Int>
inline ptrdiff_t offset(ptrdiff_t i, long long stride) {
  return i * static_cast<ptrdiff_t>(static_cast<Int>(stride));
}
template <class Int>
inline const Int* selection_of(const int* selection) {
  return reinterpret_cast<const Int*>(selection);
}

// An index counts by its low word alone.
template <class Int>
inline int place(Int index) {
  return static_cast<int>(index);
}

// f(i, k) for each i whose mask is not 0, k counting them. The places are found first, a block at a time, without a
// branch: masks are hard to predict.
template <class Int, class F>
inline void for_each_selected(ptrdiff_t n, const Int* mask, F f) {
  constexpr ptrdiff_t block = 256;
  short places[block];
  ptrdiff_t k = 0;
  for (ptrdiff_t from = 0; from < n; from += block) {
    const ptrdiff_t size = n - from < block ? n - from : block;
    int found = 0;
    for (ptrdiff_t i = 0; i < size; ++i) {
      places[found] = static_cast<short>(i);
      found += mask[from + i] != 0;
    }
    for (int j = 0; j < found; ++j, ++k) f(from + places[j], k);
  }
}

}  // namespace
}  // namespace orx::tef

#define ORX_ELEMENT_s float
#define ORX_ELEMENT_d double
#define ORX_ELEMENT_c orx::tef::ComplexElement<float>
#define ORX_ELEMENT_z orx::tef::ComplexElement<double>

// The kernels of a function for all types: `body` is a template over the width of the call's integers, called with the
// kernel's parameters, those that are vectors of elements as such.
#define ORX_PACKING_KERNEL(shape, t, Fn, body)                                                               \
  ORX_API void orx_tef_kernel_##t##Fn##_PXHAynn ORX_TEF_PARAMETERS_##shape(ORX_TEF_REAL_##t, ORX_TEF_FLAG) { \
    using Element = ORX_ELEMENT_##t;                                                                         \
    const auto* const from = reinterpret_cast<const Element*>(a);                                            \
    auto* const to = reinterpret_cast<Element*>(y);                                                          \
    flag == 1 ? body<int>(n, from, ORX_PACKING_WHERE_##shape, to)                                            \
              : body<long long>(n, from, ORX_PACKING_WHERE_##shape, to);                                     \
  }
#define ORX_PACKING_WHERE_pack_strided stride
#define ORX_PACKING_WHERE_unpack_strided stride
#define ORX_PACKING_WHERE_pack_selected selection
#define ORX_PACKING_WHERE_unpack_selected selection
#define ORX_PACKING_KERNELS(shape, Fn, body) \
  ORX_PACKING_KERNEL(shape, s, Fn, body)     \
  ORX_PACKING_KERNEL(shape, d, Fn, body)     \
  ORX_PACKING_KERNEL(shape, c, Fn, body) ORX_PACKING_KERNEL(shape, z, Fn, body)
