// Inverse circular and hyperbolic functions by the formulas of the scalar routines: of singles in doubles, which carry them to
// 2^-40, of doubles in numbers in two parts.
#pragma once
#include "_complex/ln_in_one.hpp"
#include "_complex/ln_in_two.hpp"

ORX_ISA_BEGIN(orx::tef)

struct ArcsData {
  Row<double> one = 1.0, minus_one = -1.0, two = 2.0, four = 4.0, half = 0.5, quarter = 0.25;
  Row<double> least = 0x1p-1000;  // a divisor beside which the dividend is 0
};
inline constexpr ArcsData kArcs{};

// ln(1 + x), x >= 0.
template <class X>
inline X log1p_of(X x) {
  const auto& d = kArcs;
  const X sum = d.one + x;
  return ln_of_sum_near_one<LnDescription, false>(sum, keep(less(sum, d.two), x - (sum - d.one)));
}
template <class X>
inline HighLow<X> log1p_of(HighLow<X> x) {
  return log1p_in_two(x);
}
// The angle of a point in the first quadrant, or of (-x, y) where `sign` has a minus.
template <class X, class... Sign>
inline X angle_of(X y, X x, Sign... sign) {
  return dAngleLA::of(y, x, sign...);
}
template <class X, class... Sign>
inline HighLow<X> angle_of(HighLow<X> y, HighLow<X> x, Sign... sign) {
  return angle_in_two(y, x, sign...);
}

// Of x + iy in the first quadrant, as in the scalar routine: with r and s the distances from -1 and 1, a = (r + s)/2 and
// b = x/a the arcsine is asin b + i ln(a + sqrt(a^2 - 1)). Here
//   a - 1 = (y^2/(r + (x + 1)) + t)/2 and leg^2 = a^2 - x^2 = (a + x)(y^2/(r + (x + 1)) + u)/2,
// where t and u are y^2/(s + |x - 1|) and s + |x - 1|, or for x > 1 the other way round.
template <class Carried, class X>
struct Arc {
  using Number = decltype(Carried::exact(X{}));
  Number side, leg, log;  // x, the leg, ln(a + sqrt(a^2 - 1))

  explicit Arc(Complex<X> z) {
    const auto& d = kArcs;
    const X x = magnitude(z.re), y = magnitude(z.im);
    side = Carried::exact(x);
    const X one = constant<X>(d.one);
    const Number square = Carried::product(y, y), from_left = Carried::sum(x, one),
                 from_right = Carried::sum(x, constant<X>(d.minus_one));
    const Number r = square_root(from_left * from_left + square),
                 s = square_root(from_right * from_right + square);
    const Number a = scaled(r + s, d.half);
    const Number rest = s + magnitude(from_right), quotient = square / max(rest, d.least),
                 above = square / (r + from_left);
    const auto beyond = less(one, x);
    leg = square_root(scaled(a + x, d.half) * (above + select(beyond, quotient, rest)));
    const Number a_less_1 = scaled(above + select(beyond, rest, quotient), d.half);
    log = log1p_of(a_less_1 + square_root(a_less_1 * (a + one)));
  }
};

template <class Carried>
struct Arcs {
  struct Asin {
    template <class X>
    static auto rare(Complex<X> z) {
      return not_moderate(z);
    }
    template <class X>
    static auto of(Complex<X> z) {
      const Arc<Carried, X> arc(z);
      return complex_of(turned_by(angle_of(arc.side, arc.leg), z.re), turned_by(arc.log, z.im));
    }
  };
  using Asinh = OddTurned<Asin>;
  struct Acos : Asin {
    template <class X>
    static auto of(Complex<X> z) {
      const Arc<Carried, X> arc(z);
      return complex_of(angle_of(arc.leg, arc.side, z.re), turned_by(arc.log, opposite(z.im)));
    }
  };
  // The parts of the arccosine exchanged, with other signs.
  struct Acosh : Acos {
    template <class X>
    static auto of(Complex<X> z) {
      const auto y = Acos::of(z);
      return complex_of(magnitude(y.im), turned_by(y.re, z.im));
    }
  };

  // ln((1 + z)/(1 - z))/2: but for the sign the real part is ln(1 + 4 x/((1 - x)^2 + y^2))/4.
  struct Atanh {
    template <class X>
    static auto rare(Complex<X> z) {
      const auto pole = bit_and(equal(magnitude(z.re), broadcast<X>(1)),
                                less(magnitude(z.im), kModulusFrom<typename X::Element>));
      return bit_or(not_moderate(z), pole);
    }
    template <class X>
    static auto of(Complex<X> z) {
      const auto& d = kArcs;
      const X x = magnitude(z.re), y = magnitude(z.im), one = constant<X>(d.one);
      const auto square = Carried::product(y, y), less_x = Carried::sum(one, opposite(x));
      const auto log = scaled(log1p_of(Carried::exact(x * d.four) / (less_x * less_x + square)), d.quarter);
      const auto width = less_x * Carried::sum(one, x) - square;
      const auto angle =
          scaled(angle_of(Carried::exact(y * d.two), magnitude(width), high_part(width)), d.half);
      return complex_of(turned_by(log, z.re), turned_by(angle, z.im));
    }
  };
  using Atan = OddTurned<Atanh>;
};

ORX_ISA_END

// Both precisions: ORX_ARCS(Asin, casin).
#define ORX_ARCS(Fn, name)                                                                                \
  using c##Fn = orx::tef::InSingles<orx_tef_kernel_##name##_scalar, orx::tef::Arcs<orx::tef::InOne>::Fn>; \
  using z##Fn = orx::tef::InDoubles<orx_tef_kernel_##name##_scalar, orx::tef::Arcs<orx::tef::InTwo>::Fn>; \
  ORX_KERNEL(c, Fn, PXHAynn, c##Fn)                                                                       \
  ORX_KERNEL(z, Fn, PXHAynn, z##Fn)
