// Arguments of the trigonometric functions that are too large for multiples of pi to be subtracted from: a product
// with those binary digits of 1/(2 pi) that matter (M. Payne, R. Hanek, "Radian reduction for trigonometric
// functions", ACM SIGNUM Newsletter 18, 1983).
//
// x = m 2^(e - 1075), m an integer. Row e of the table holds the 192 bits of 1/(2 pi) behind those that give m whole
// turns; m times the row, modulo 2^192, is the fraction of a turn. The double that comes nearest to a multiple of
// pi/2, 6381956970095103 * 2^797, leaves 61 zeros in it, so that 128 bits are enough to go on with.
//
// Singles have a table of their own, of doubles: 29 bits, whose product with 24 is exact, and those that follow. Their products
// tell half turns to 2^-58, which is enough, for no single leaves 30 zeros.
#pragma once
#include "frame/kernel.hpp"

namespace orx::tef {
extern const uint64_t kTurns[2048][3];
extern const double kSingleTurns[256][2];
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

// x = n pi/256 + r + r_lo, |r| <= pi/512: n modulo 512 stands in the low bits of N. q is r, or 0 where it is too small to be
// squared.
template <class X>
struct Turn {
  X N, r, r_lo, q;
};

struct TurnConstants {
  Row<double> shifter = 0x1.8p+52;
  Row<double> unit_hi = 0x1.921fb54p-7, unit_lo = 0x1.10b4611a62633p-37;  // pi/256, 27 bits and 53 more
  Row<double> unit = 0x1.921fb54442d18p-7;
  // Doubles whose last bit is worth 2^-32, 2^-64, 2^-96 and 2^-128 of a turn, in units of 1/512.
  Row<double> grid[4] = {0x1p+29, 0x1p-3, 0x1p-35, 0x1p-67};
};
inline constexpr TurnConstants kTurnData{};

// |x| from 2 on is a whole number of turns, n/512 of one, and high + low + rest in units of 1/512. n counts modulo 512, and the
// sum is at most a half, but for 2^-23. `high` and `low` are an exact sum.
template <class X>
struct TurnParts {
  X n, high, low, rest[2];

  explicit TurnParts(X x) {
    using I = BitsOfLanes<X>;
    constexpr uint64_t digit = 0xFFFFFFFF;
    const SpilledWords<X> words(x);
    const auto row = [&](int lane) { return 3 * (words.high(lane) >> 20 & 0x7FF); };
    const I w[3] = {gather_bits<X>(kTurns[0] + 2, row), gather_bits<X>(kTurns[0] + 1, row),
                    gather_bits<X>(kTurns[0], row)};
    const I m = words.bits();
    const I m_high = (shift_right<32>(m) & uint64_t{0xFFFFF}) | uint64_t{0x100000};

    // 1. The products of m with the digits of 32 bits, from the lowest. What the lowest two places carry is left out but for
    // m_high's part: less than 2 in the last of the 128 bits.
    const I digits[6] = {w[0], shift_right<32>(w[0]), w[1], shift_right<32>(w[1]),
                         w[2], shift_right<32>(w[2])};
    I sum[6], before = multiply_wide(m, digits[1]);
    for (int k = 2; k < 6; ++k) {
      const I product = multiply_wide(m, digits[k]);
      sum[k] = (product & digit) + shift_right<32>(before) + multiply_wide(m_high, digits[k - 1]);
      before = product;
    }
    sum[2] = sum[2] + shift_right<32>(multiply_wide(m_high, digits[0]));

    // 2. Places as doubles, with the carry of the place below, which itself waits for none: so they may reach a little
    // beyond 2^32. Above the highest are whole turns.
    const auto place = [&](I k, const Row<double>& grid) {
      return bit_or(reals<X>(k), constant<X>(grid)) - grid;
    };
    const auto& d = kTurnData;
    const auto with_carry = [&](int k) { return (sum[k] & digit) + shift_right<32>(sum[k - 1]); };
    const X first = place(with_carry(5) & digit, d.grid[0]);
    n = (first + d.shifter) - d.shifter;

    // 3. Exact sums: a term is 0 or has at least the exponent of the next.
    const auto s = fast_two_sum(first - n, place(with_carry(4), d.grid[1]));
    high = s.high;
    low = s.low;
    rest[0] = place(with_carry(3), d.grid[2]);
    rest[1] = place(sum[2] & digit, d.grid[3]);
  }
};

// The reduction of finite |x| from 2 on.
template <class X>
inline Turn<X> reduce_by_digits(X x) {
  const auto& d = kTurnData;
  const TurnParts<X> of(x);
  const auto t = fast_two_sum(of.high, of.rest[0]);
  const X t_lo = (of.low + t.low) + of.rest[1];

  // Times pi/256; the leading product is exact.
  const auto part = split(t.high);
  const X leading = part.high * d.unit_hi;
  const X rest = part.high * d.unit_lo + (part.low + t_lo) * d.unit;
  const auto r = fast_two_sum(leading, rest);

  // The sign of x turns all of them.
  const X sign = bit_and(x, broadcast_bits<X>(kSignBit<double>));
  const X signed_r = bit_xor(r.high, sign);
  return {bit_xor(of.n, sign) + d.shifter, signed_r, bit_xor(r.low, sign), signed_r};
}
// The same with r in one double; r_lo is not made.
template <class X>
inline Turn<X> reduce_by_digits_la(X x) {
  const auto& d = kTurnData;
  const TurnParts<X> of(x);
  const X sign = bit_and(x, broadcast_bits<X>(kSignBit<double>));
  const X r = bit_xor((of.high + (of.low + (of.rest[0] + of.rest[1]))) * d.unit, sign);
  return {bit_xor(of.n, sign) + d.shifter, r, X{}, r};
}

// A single, widened, in half turns but for whole turns: the sum of an exact number and one below 2^-5.
template <class X>
inline HighLow<X> half_turns_of_single(X x) {
  const SpilledWords<X> words(x);
  X digits, more;
  // The exponent field of the single is smaller by 896, which is 128 less a multiple of the number of rows.
  gather_pairs(
      kSingleTurns[0], [&](int lane) { return ((words.high(lane) >> 20) + 128) & 0xFF; }, digits, more);
  return {x * digits, x * more};
}

ORX_ISA_END
