// ln(x + i y) = ln(x^2 + y^2)/2 + i Arg(x + i y).
//
// Near |z| = 1 the sum of squares has lost what matters: it is carried as a double and what that lacks.
#pragma once
#include "_complex/scalar.hpp"
#include "_complex/vectors.hpp"
#include "atan2/atan2.hpp"
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)

// Real::of(z) is the real part, right where Real::usual(z) has a mask, for finite numbers that are not 0; Angle the kernel
// of Atan2; scalar(a, r) does what is left.
template <class T, class Real, class Angle, int scalar(const Complex<T>*, Complex<T>*)>
struct ComplexLn : Kernel<Complex<T>(Complex<T>)> {
  template <class X>
  static auto rare(Complex<X> z) {
    return Angle::rare(z.im, z.re);
  }
  template <class X>
  static Complex<X> eval(Complex<X> z) {
    return {Real::of(z), Angle::eval(z.im, z.re)};
  }
  template <class X, class Left>
  static void finish(Complex<X> z, Left& left) {
    const X usual = bit_and(Real::usual(z), left.lanes);
    left.finish(usual, [&](X which) {
      const X one = broadcast<X>(1);
      const Complex<X> safe{select(which, z.re, one), select(which, z.im, one)};
      RareLanes<X, X> angle(which, Angle::eval(one, one));
      Angle::finish(safe.im, safe.re, angle);
      return Complex<X>{Real::of(safe), angle.y};
    });
  }
  static int rare_lane(const Complex<T>* a, Complex<T>* r) { return scalar(a, r); }
};

// |z|^2 of doubles: squares, exactly, and their sum with all that rounding loses.
template <class X>
struct SquareOfModulus {
  X high;
  HighLow<X> rest;

  explicit SquareOfModulus(Complex<X> z) {
    const X x = magnitude(z.re), y = magnitude(z.im), a = max(x, y), b = min(x, y);
    const auto a2 = exact_product(a, a), b2 = exact_product(b, b);
    const auto sum = fast_two_sum(a2.high, b2.high), low_sum = two_sum(a2.low, b2.low);
    const auto low = two_sum(sum.low, low_sum.high), square = fast_two_sum(sum.high, low.high);
    high = square.high;
    rest = fast_two_sum(square.low, low.low + low_sum.low);
  }
};

// ln(x + rest), rest being below the last place of x, in two parts. R is next to the reciprocal of x's fraction m, which
// differs from x by a power of two; as x is reduced to e = m R - 1, the sum is to e + rest R m/x.
template <class Description, class X>
inline X ln_of_sum(X x, HighLow<X> rest) {
  Indices<X> index;
  const X m = log_fraction(x);
  const auto reduced = log_reduce<Description>(m, index);
  const X factor = reduced.R * (m / x);
  const auto e = fast_two_sum(reduced.e, rest.high * factor);
  return log_ha<Description>(exponent_field(x), index, e.high,
                             Description::polynomial_ha(e.high) + (e.low + rest.low * factor));
}
// The same, where x is near 1 if the rest matters, in one double.
template <class Description, bool ep, class X>
inline X ln_of_sum_near_one(X x, X rest) {
  Indices<X> index;
  const X e = log_reduce<Description>(log_fraction(x), index).e;
  return log_la<Description>(exponent_field(x), index, e, Description::template polynomial_la<ep>(e) + rest);
}

ORX_ISA_END
