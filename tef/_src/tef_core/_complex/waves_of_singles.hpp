// Sine and cosine, circular and hyperbolic, of singles in doubles: what complex functions of singles are made of. They are
// right to 2^-39, so that a result rounded to single is off by half a unit and next to nothing.
#pragma once
#include "_complex/elementwise.hpp"
#include "_complex/vectors.hpp"
#include "sin/vdsincos.hpp"
#include "sinh/vdsinh.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class X>
struct Waves {
  X sinh, cosh, sin, cos;
};

struct WavesOfSinglesData {
  Row<double> small = 0x1p-8;  // below it sinh x = x + x^3/6 to 2^-39; above it e^x - e^-x has lost 8 bits
  Row<double> sixth = 1 / 6.0, one = 1.0;
  Row<float> least = 0x1p-60f, angles_from = 0x1p24f;
};
inline constexpr WavesOfSinglesData kWavesOfSingles{};

template <class X>
struct SinhCoshOfSingle {
  X sinh, cosh;

  // |x| <= 100, 0 or not so small that its square underflows.
  explicit SinhCoshOfSingle(X x) {
    const auto& d = kWavesOfSingles;
    const X size = magnitude(x);
    const auto h = ExponentialHalves<X>::template without_rests<0>(size, size);
    const X r2 = h.r * h.r, c = cosh_rest(r2), s = h.r + (h.r * r2) * d.sixth;
    const X C = h.a + h.b, S = h.a - h.b;
    cosh = C + (C * c + S * s);
    const X near_0 = size + (size * d.sixth) * (size * size);
    sinh = with_sign_of(select(less(size, d.small), near_0, S + (S * c + C * s)), x);
  }
};

// Of x + iy.
template <class X>
inline Waves<X> waves_of_single(X x, X y) {
  const SinhCoshOfSingle<X> of(x);
  return {of.sinh, of.cosh, sine_by_polynomial<false, false>(y, vdsin_data),
          sine_by_polynomial<true, false>(y, vdsin_data)};
}

// Functions that go with i z as the hyperbolic ones go with z.
enum class Turned { kNot, kOdd, kEven };

// Function::of(waves) is a hyperbolic function, or the circular one by f(z) = g(iz)/i or g(iz); right for real parts up to
// Function::kMost.
template <class Function, Turned turned>
struct WavesOfSingles {
  template <class X>
  static auto rare(Complex<X> z) {
    const auto& d = kWavesOfSingles;
    const X x = magnitude(turned == Turned::kNot ? z.re : z.im),
            y = magnitude(turned == Turned::kNot ? z.im : z.re);
    const auto tiny = [&](X size) { return bit_and(less(size, d.least), not_equal(size, X{})); };
    return bit_or(bit_or(not_at_most(x, Function::kMost), not_below(y, d.angles_from)),
                  bit_or(tiny(x), tiny(y)));
  }
  template <class X>
  static Complex<X> eval(Complex<X> z) {
    const auto wide = widen(z);
    if constexpr (turned == Turned::kNot) return narrow(Function::of(waves_of_single(wide.re, wide.im)));
    const auto y = Function::of(waves_of_single(wide.im, wide.re));
    if constexpr (turned == Turned::kOdd) return narrow(Complex<decltype(y.re)>{y.im, y.re});
    return narrow(Complex<decltype(y.re)>{y.re, opposite(y.im)});
  }
};

struct SinhOfWaves {
  static constexpr Row<float> kMost = 100.0f;
  template <class X>
  static Complex<X> of(const Waves<X>& w) {
    return {w.sinh * w.cos, w.cosh * w.sin};
  }
};
struct CoshOfWaves {
  static constexpr Row<float> kMost = 100.0f;
  template <class X>
  static Complex<X> of(const Waves<X>& w) {
    return {w.cosh * w.cos, w.sinh * w.sin};
  }
};
// The quotient of sine and cosine times its conjugate.
struct TanhOfWaves {
  static constexpr Row<float> kMost = 40.0f;
  template <class X>
  static Complex<X> of(const Waves<X>& w) {
    const X inverse = kWavesOfSingles.one / (w.sinh * w.sinh + w.cos * w.cos);
    return {w.sinh * w.cosh * inverse, w.sin * w.cos * inverse};
  }
};

template <class Function, Turned turned, OfOneNumber scalar>
using cOfWaves = InVectors<ComplexOfOne<float, scalar>, WavesOfSingles<Function, turned>>;

ORX_ISA_END
