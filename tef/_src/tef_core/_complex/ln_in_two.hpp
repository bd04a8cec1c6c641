// ln z of doubles, each part in two: what the decimal logarithm and powers of doubles are made of.
#pragma once
#include "_complex/carried.hpp"
#include "_complex/natural.hpp"
#include "atan/vdatan.hpp"
#include "cln/cln.hpp"

ORX_ISA_BEGIN(orx::tef)

// ln(x + rest), rest being below the last place of x, to 2^-62 of itself, also next to 0: there the factor is exact.
template <class X>
inline HighLow<X> ln_of_sum_in_two(X x, HighLow<X> rest) {
  Indices<X> index;
  const X m = log_fraction(x);
  const auto reduced = log_reduce<LnDescription>(m, index);
  const X factor = reduced.R * (m / x), first = rest.high * factor;
  const auto ln = ln_of_reduced(exponent_field(x), index, reduced.e);
  const auto sum = two_sum(ln.high, first);
  return {sum.high, sum.low + (ln.low + (rest.low * factor - first * (reduced.e + first * kInTwo.half)))};
}

// The angle of the point (x, y), y and x positive; of (-x, y) where a third argument has a minus. As the HA kernel of Atan, with
// all that the quotient lacks.
template <class X, class... Sign>
inline HighLow<X> angle_in_two(HighLow<X> y, HighLow<X> x, Sign... sign) {
  const auto& d = vdatan_data;
  const auto steep = less(x.high, y.high);
  const auto shorter = select(steep, x, y), longer = select(steep, y, x);
  const TableOctant<X> octant(steep, sign...);

  // 1. The nearest sixteenth.
  const X N = shorter.high * approximate_reciprocal(longer.high) + octant.shifter;
  const X c = N - octant.shifter;

  // 2. t = q + t_lo. The dividend is exact but for its low part.
  const X dividend_sign = bit_xor(octant.sign, broadcast_bits<X>(kSignBit<double>));
  const X dividend = bit_xor(product_residue(longer.high, c, shorter.high), dividend_sign);
  const X dividend_lo = bit_xor(c * longer.low - shorter.low, dividend_sign);
  const auto parts = split(shorter.high);
  const X divisor = longer.high + c * shorter.high;
  const X divisor_lo =
      ((c * parts.high - (divisor - longer.high)) + c * parts.low) + (longer.low + c * shorter.low);
  const X inverse = kInTwo.one / divisor, q = dividend * inverse;
  const auto digits = split(q);
  const X excess = product_residue(divisor, digits.high, dividend) +
                   (digits.low * divisor + (q * divisor_lo - dividend_lo));

  // 3. The sum, from its large end.
  X angle, angle_lo;
  const SpilledWords<X> n(N);
  gather_pairs(
      kAngleTable[0], [&](int lane) { return n.low(lane) & 127; }, angle, angle_lo);
  const X square = q * q;
  const X rest = (q * square) * polynomial(square, square * square, d.ha) - excess * inverse;
  const auto sum = fast_two_sum(angle, q);
  return normalised(HighLow<X>{sum.high, sum.low + (angle_lo + rest)});
}

// ln(1 + x), x >= 0.
template <class X>
inline HighLow<X> log1p_in_two(HighLow<X> x) {
  const auto sum = two_sum(constant<X>(kInTwo.one), x.high);
  return ln_of_sum_in_two(sum.high, two_sum(sum.low, x.low));
}

// Of a number that is moderate and not too small.
template <class X>
inline Complex<HighLow<X>> ln_of(InTwo, Complex<X> z) {
  const SquareOfModulus<X> square(z);
  const auto angle = angle_in_two(InTwo::exact(magnitude(z.im)), InTwo::exact(magnitude(z.re)), z.re);
  return {scaled(ln_of_sum_in_two(square.high, square.rest), kInTwo.half), turned_by(angle, z.im)};
}

ORX_ISA_END
