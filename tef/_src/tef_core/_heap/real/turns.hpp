// Arguments of the trigonometric functions that are too large for multiples of pi to be subtracted from: a product
// with those binary digits of 1/pi that matter (M. Payne, R. Hanek, "Radian reduction for trigonometric functions",
// ACM SIGNUM Newsletter 18, 1983), in doubles.
//
// The digits are cut into pieces so short that their products with the halves of an argument, and sums of two such products that
// meet in the same places, are exact. Those that make whole turns are left out, by a row of pieces for each exponent. The
// double that comes nearest to a multiple of pi/2, 6381956970095103 * 2^797, leaves 61 zeros behind the point of its turns.
//
// Singles are widened, and their 24 bits need not be halved. No single leaves 30 zeros.
#pragma once
#include "frame/kernel.hpp"

namespace orx::tef {
extern const double kTurns[1024][6];
extern const double kSingleTurns[256][2];
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

// x = n pi/256 + r + r_lo, n a multiple of `step` and |r| <= step pi/512: n/step modulo 512 stands in the low bits of N. q is r,
// or 0 where it is too small to be squared.
template <class X>
struct Turn {
  X N, r, r_lo, q;
};
inline constexpr int kQuarterTurn = 128;

// The bits of doubles whose last bit is worth `step`.
template <int step>
inline constexpr Row<double> kShifter = step * 0x1.8p+52;

struct TurnConstants {
  Row<double> one = 1.0;
  // The significand with the sign, and its upper 27 bits.
  Row<uint64_t> significand = 0x800FFFFFFFFFFFFF, upper = 0x800FFFFFFC000000;
  Row<double> unit_hi = 0x1.921fb54p-7, unit_lo = 0x1.10b4611a62633p-37;  // pi/256, 27 bits and 53 more
  Row<double> unit = 0x1.921fb54442d18p-7;
};
inline constexpr TurnConstants kTurnData{};

// |x| from 2 on in units of pi/256, as a sum: what is above the point, without whole turns, and the places below it.
template <class X>
struct Units {
  X digits[6], m, m_high, m_low, above;

  explicit Units(X x) {
    const auto& d = kTurnData;
    const SpilledWords<X> words(x);
    for (int k = 0; k < 6; k += 2)
      gather_pairs<6>(
          kTurns[0] + k, [&](int lane) { return words.high(lane) >> 20 & 0x3FF; }, digits[k], digits[k + 1]);
    m = bit_or(bit_and(x, d.significand), constant<X>(d.one));
    m_high = bit_or(bit_and(x, d.upper), constant<X>(d.one));
    m_low = m - m_high;
    // Whole turns would make the sum inexact.
    const X highest = places(1);
    above = (highest - ((highest + kShifter<512>)-kShifter<512>)) + places(2);
  }
  // What the halves and the pieces contribute to the places of piece k and above.
  X places(int k) const { return m_low * digits[k - 1] + m_high * digits[k]; }
  // `rest` and the places below the point. Exact sums: the first term is a multiple of the other's last place.
  HighLow<X> with_places_below(X rest) const {
    const auto first = fast_two_sum(rest, places(3)), second = fast_two_sum(first.high, places(4));
    const X rest_of_digits = m_low * digits[4] + m * digits[5];
    return {second.high, (first.low + second.low) + rest_of_digits};
  }
};

// n, a multiple of `step`, and what it leaves of x + ahead pi/256 above the point of the units.
template <int step, int ahead, class X>
struct Steps {
  X N, rest;

  explicit Steps(const Units<X>& x) {
    static constexpr Row<double> shift = double{ahead};
    N = (ahead ? x.above + shift : x.above) + kShifter<step>;
    const X n = N - kShifter<step>;
    rest = x.above - (ahead ? n - shift : n);
  }
};

// The reduction of finite |x| from 2 on.
template <int step = 1, class X>
inline Turn<X> reduce_by_digits(X x) {
  const auto& d = kTurnData;
  const Units<X> units(x);
  const Steps<step, 0, X> n(units);
  const auto t = units.with_places_below(n.rest);
  // Times pi/256; the leading product is exact.
  const auto part = split(t.high);
  const X leading = part.high * d.unit_hi;
  const X rest = part.high * d.unit_lo + (part.low + t.low) * d.unit;
  const auto r = fast_two_sum(leading, rest);
  return {n.N, r.high, r.low, r.high};
}
// The same with r in one double; r_lo is not made.
template <class X>
inline Turn<X> reduce_by_digits_la(X x) {
  const Units<X> units(x);
  const Steps<1, 0, X> n(units);
  const auto t = units.with_places_below(n.rest);
  const X r = (t.high + t.low) * kTurnData.unit;
  return {n.N, r, X{}, r};
}

// A single, widened, in half turns but for whole turns: the sum of an exact number and one below 2^-5.
template <class X>
inline HighLow<X> half_turns_of_single(X x) {
  const SpilledWords<X> words(x);
  X digits, more;
  gather_pairs(
      kSingleTurns[0], [&](int lane) { return words.high(lane) >> 20 & 0xFF; }, digits, more);
  return {x * digits, x * more};
}

ORX_ISA_END
