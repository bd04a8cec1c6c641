// Inverse circular and hyperbolic functions of singles, in doubles: the formulas of the scalar routines, which double
// carries to 2^-40.
#pragma once
#include "_complex/elementwise.hpp"
#include "cln/cln_of_single.hpp"

ORX_ISA_BEGIN(orx::tef)

struct ArcsData {
  Row<double> one = 1.0, two = 2.0, four = 4.0, half = 0.5, quarter = 0.25;
  Row<double> least = 0x1p-1000;  // a divisor beside which the dividend is 0
};
inline constexpr ArcsData kArcs{};

// ln(1 + x), x >= 0.
template <class X>
inline X log1p_of_single(X x) {
  const auto& d = kArcs;
  const X sum = d.one + x;
  return ln_of_sum_near_one<LnDescription, false>(sum, keep(less(sum, d.two), x - (sum - d.one)));
}

// Of x + iy in the first quadrant, as in the scalar routine: with r and s the distances from -1 and 1, a = (r + s)/2 and
// b = x/a the arcsine is asin b + i ln(a + sqrt(a^2 - 1)). Here
//   a - 1 = (y^2/(r + (x + 1)) + t)/2 and leg^2 = a^2 - x^2 = (a + x)(y^2/(r + (x + 1)) + u)/2,
// where t and u are y^2/(s + |x - 1|) and s + |x - 1|, or for x > 1 the other way round.
template <class X>
struct Arc {
  X leg, log;

  Arc(X x, X y) {
    const auto& d = kArcs;
    const X square = y * y, from_left = x + d.one, from_right = x - d.one;
    const X r = square_root(from_left * from_left + square),
            s = square_root(from_right * from_right + square);
    const X a = (r + s) * d.half;
    const X rest = s + magnitude(from_right), quotient = square / max(rest, d.least),
            above = square / (r + from_left);
    const auto beyond = less(constant<X>(d.one), x);
    leg = square_root((a + x) * d.half * (above + select(beyond, quotient, rest)));
    const X a_less_1 = (above + select(beyond, rest, quotient)) * d.half;
    log = log1p_of_single(a_less_1 + square_root(a_less_1 * (a + d.one)));
  }
};

struct ArcFunction {
  template <class X>
  static auto rare(Complex<X> z) {
    return not_moderate(z);
  }
};
struct AsinOfSingle : ArcFunction {
  template <class X>
  static auto eval(Complex<X> z) {
    return narrow(of(widen(z)));
  }
  template <class X>
  static Complex<X> of(Complex<X> z) {
    const X x = magnitude(z.re);
    const Arc<X> arc(x, magnitude(z.im));
    return {with_sign_of(dAngleLA::of(x, arc.leg), z.re), with_sign_of(arc.log, z.im)};
  }
};
struct AsinhOfSingle : ArcFunction {
  template <class X>
  static auto eval(Complex<X> z) {
    const auto wide = widen(z);
    const auto y = AsinOfSingle::of(Complex<decltype(wide.re)>{wide.im, wide.re});
    return narrow(Complex<decltype(wide.re)>{y.im, y.re});
  }
};
struct AcosOfSingle : ArcFunction {
  template <class X>
  static auto eval(Complex<X> z) {
    const auto wide = widen(z);
    const auto y = of(wide);
    return narrow(Complex<decltype(wide.re)>{y.re, with_sign_of(y.im, opposite(wide.im))});
  }
  // The parts of the arccosine without their signs.
  template <class X>
  static Complex<X> of(Complex<X> z) {
    const X x = magnitude(z.re);
    const Arc<X> arc(x, magnitude(z.im));
    return {dAngleLA::of(arc.leg, x, z.re), arc.log};
  }
};
struct AcoshOfSingle : ArcFunction {
  template <class X>
  static auto eval(Complex<X> z) {
    const auto wide = widen(z);
    const auto y = AcosOfSingle::of(wide);
    return narrow(Complex<decltype(wide.re)>{y.im, with_sign_of(y.re, wide.im)});
  }
};

// ln((1 + z)/(1 - z))/2: but for the sign the real part is ln(1 + 4 x/((1 - x)^2 + y^2))/4.
struct AtanhOfSingle : ArcFunction {
  template <class X>
  static auto rare(Complex<X> z) {
    return bit_or(not_moderate(z), pole(z.re, z.im));
  }
  template <class X>
  static auto eval(Complex<X> z) {
    return narrow(of(widen(z)));
  }
  template <class X>
  static Complex<X> of(Complex<X> z) {
    const auto& d = kArcs;
    const X x = magnitude(z.re), square = z.im * z.im, less_x = d.one - x;
    const X log = log1p_of_single(d.four * x / (less_x * less_x + square)) * d.quarter;
    const X width = less_x * (d.one + x) - square;
    const X angle = dAngleLA::of(magnitude(z.im) * d.two, magnitude(width), width) * d.half;
    return {with_sign_of(log, z.re), with_sign_of(angle, z.im)};
  }

 protected:
  template <class X>
  static auto pole(X x, X y) {
    static constexpr Row<float> one = 1.0f;
    return bit_and(equal(magnitude(x), one), equal(y, X{}));
  }
};
struct AtanOfSingle : AtanhOfSingle {
  template <class X>
  static auto rare(Complex<X> z) {
    return bit_or(not_moderate(z), pole(z.im, z.re));
  }
  template <class X>
  static auto eval(Complex<X> z) {
    const auto wide = widen(z);
    const auto y = of(Complex<decltype(wide.re)>{wide.im, wide.re});
    return narrow(Complex<decltype(wide.re)>{y.im, y.re});
  }
};

ORX_ISA_END

// Both precisions: ORX_ARCS(Asin, casin).
#define ORX_ARCS(Fn, name)                                                                         \
  using c##Fn = orx::tef::InVectors<orx::tef::ComplexOfOne<float, orx_tef_kernel_##name##_scalar>, \
                                    orx::tef::Fn##OfSingle>;                                       \
  using z##Fn = orx::tef::ComplexOfOne<double, orx_tef_kernel_##name##_scalar>;                    \
  ORX_KERNEL(c, Fn, PXHAynn, c##Fn)                                                                \
  ORX_KERNEL(z, Fn, PXHAynn, z##Fn)
