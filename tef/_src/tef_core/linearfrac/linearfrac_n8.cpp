// (a * scalea + shifta) / (b * scaleb + shiftb). Divisions by zero and overflows stand in the result; nothing
// is reported.
#include "frame/control.hpp"
#include "frame/simd.hpp"

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

// As ORX_KERNEL (frame/kernel.hpp). The bound is that of five roundings where neither sum cancels.
#define ORX_LINEARFRAC_KERNEL(t, Fn, code, K, bound, from, to)                           \
  ORX_API void orx_tef_kernel_##t##Fn##_##code ORX_PARAMETERS_linearfrac(ORX_REAL_##t) { \
    linear_fraction(n, a, b, K<ORX_REAL_##t>{scalea, shifta, scaleb, shiftb}, r);        \
  }
ORX_LINEARFRAC_KERNEL(s, LinearFrac, N8HAynn, Fraction, 5, -10, 10)
ORX_LINEARFRAC_KERNEL(d, LinearFrac, N8HAynn, Fraction, 5, -10, 10)
