// sin, cos, tan, sinh, cosh and tanh of complex numbers by the real sines and cosines, circular and hyperbolic, of their parts.
#pragma once
#include "_complex/carried.hpp"

ORX_ISA_BEGIN(orx::tef)

// Of x + iy: sinh x, cosh x, sin y, cos y.
template <class Number>
struct Waves {
  Number sinh, cosh, sin, cos;
};

// Both parts over a number that is not 0.
template <class T, int n>
inline Complex<Vec<T, n>> over(Complex<Vec<T, n>> z, Vec<T, n> divisor) {
  const Vec<T, n> inverse = kInTwo.one / divisor;
  return {z.re * inverse, z.im * inverse};
}
template <class X>
inline Complex<HighLow<X>> over(Complex<HighLow<X>> z, HighLow<X> divisor) {
  return {z.re / divisor, z.im / divisor};
}

struct SinhByWaves {
  template <class Number>
  static Complex<Number> of(const Waves<Number>& w) {
    return {w.sinh * w.cos, w.cosh * w.sin};
  }
};
struct CoshByWaves {
  template <class Number>
  static Complex<Number> of(const Waves<Number>& w) {
    return {w.cosh * w.cos, w.sinh * w.sin};
  }
};
// The quotient of sine and cosine times its conjugate.
struct TanhByWaves {
  template <class Number>
  static Complex<Number> of(const Waves<Number>& w) {
    return over(complex_of(w.sinh * w.cosh, w.sin * w.cos), w.sinh * w.sinh + w.cos * w.cos);
  }
};

// A function by `Method`'s waves, which are right for real parts up to `most`.
template <class Method, class Function, const auto& most>
struct OfWaves {
  template <class X>
  static auto rare(Complex<X> z) {
    const X x = magnitude(z.re), y = magnitude(z.im);
    const auto large = bit_or(not_at_most(x, most), not_below(y, Method::kAnglesFrom));
    if constexpr (Method::kTinyIsRare) {
      const auto tiny = [](X size) { return bit_and(less(size, Method::kLeast), not_equal(size, X{})); };
      return bit_or(large, bit_or(tiny(x), tiny(y)));
    } else {
      return large;
    }
  }
  template <class X>
  static auto of(Complex<X> z) {
    return Function::of(Method::waves(z));
  }
};

ORX_ISA_END

// Both precisions: ORX_WAVES(Sin, csin, OddTurned, SinhByWaves, kMost).
#define ORX_WAVES(Fn, name, Turned, Function, most)                            \
  ORX_WAVES_OF(c##Fn, InSingles, WavesOfSingles, name, Turned, Function, most) \
  ORX_WAVES_OF(z##Fn, InDoubles, WavesOfDoubles, name, Turned, Function, most) \
  ORX_KERNEL(c, Fn, PXHAynn, c##Fn)                                            \
  ORX_KERNEL(z, Fn, PXHAynn, z##Fn)
#define ORX_WAVES_OF(Kernel, In, Method, name, Turned, Function, most) \
  using Kernel = orx::tef::In<                                         \
      orx_tef_kernel_##name##_scalar,                                  \
      orx::tef::Turned<orx::tef::OfWaves<orx::tef::Method, orx::tef::Function, orx::tef::Method::most>>>;
