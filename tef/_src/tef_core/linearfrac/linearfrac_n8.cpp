// (a * scalea + shifta) / (b * scaleb + shiftb). Divisions by zero and overflows stand in the result; nothing
// is reported.
#include "frame/control.hpp"
#include "frame/simd.hpp"
#include "orx/tef_shapes.h"

namespace orx::tef {
namespace {

template <class T>
struct Fraction {
  T scalea, shifta, scaleb, shiftb;

  template <class X>
  X operator()(X a, X b) const {
    return (a * broadcast<X>(scalea) + broadcast<X>(shifta)) /
           (b * broadcast<X>(scaleb) + broadcast<X>(shiftb));
  }
};

template <class T>
__attribute__((noinline)) void linear_fraction_body(int n, const T* a, const T* b, Fraction<T> f, T* r) {
  using X = Vec<T, 1>;
  int i = 0;
  for (; i + X::kLanes <= n; i += X::kLanes)
    store_vectors(r + i, f(load_vectors<X>(a + i), load_vectors<X>(b + i)));
  for (; i < n; ++i) r[i] = (a[i] * f.scalea + f.shifta) / (b[i] * f.scaleb + f.shiftb);
}

// The mode word is not asked: denormals are never flushed.
template <class T>
void linear_fraction(int n, const T* a, const T* b, Fraction<T> f, T* r) {
  if (n > 0) run_under<Control::kNearest, linear_fraction_body<T>>(n, a, b, f, r);
}

}  // namespace
}  // namespace orx::tef

using namespace orx::tef;

#define ORX_LINEARFRAC_KERNEL(t)                                                                          \
  ORX_API void orx_tef_kernel_##t##LinearFrac_N8HAynn ORX_TEF_PARAMETERS_linearfrac(ORX_TEF_REAL_##t, ) { \
    linear_fraction(n, a, b, Fraction<ORX_TEF_REAL_##t>{scalea, shifta, scaleb, shiftb}, r);              \
  }
ORX_LINEARFRAC_KERNEL(s)
ORX_LINEARFRAC_KERNEL(d)
