// ln(x + i y) = ln(x^2 + y^2)/2 + i Arg(x + i y).
//
// Near |z| = 1 the sum of squares has lost what matters: it is carried as a double and what that lacks, which is a small
// number to be added to the logarithm (times 1/(x^2 + y^2), which is 1 there).
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

// ln(x + lost), lost being a rounding error of x.
template <class Description, bool accurate, bool ep = false, class X>
inline X ln_in_two_parts(X x, X lost) {
  Indices<X> R;
  const X e = log_reduce<Description>(log_fraction(x), R).e, k = exponent_field(x);
  if constexpr (accurate)
    return log_ha<Description>(k, R, e, Description::polynomial_ha(e) + lost);
  else
    return log_la<Description>(k, R, e, Description::template polynomial_la<ep>(e) + lost);
}

ORX_ISA_END
