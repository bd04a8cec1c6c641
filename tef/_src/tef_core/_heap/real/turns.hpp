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
  // Doubles whose last bit is worth 2^-32, 2^-64, 2^-96 and 2^-128. The first one's word is signed.
  Row<double> grid[4] = {0x1p+20, 0x1p-12, 0x1p-44, 0x1p-76};
  Row<double> signed_grid = 0x1.000008p+20;
  Row<double> grid0 = 0x1p+52;
};
inline constexpr TurnConstants kTurnData{};

// The 128 highest bits of the fraction of a turn that |x| ends in, as two 64-bit numbers.
template <class I>
struct TurnFraction {
  I high, low;
};

template <class X>
inline TurnFraction<BitsOfLanes<X>> turn_fraction(X x) {
  using I = BitsOfLanes<X>;
  constexpr uint64_t digit = 0xFFFFFFFF;
  const SpilledWords<X> words(x);
  const auto row = [&](int lane) { return 3 * (words.high(lane) >> 20 & 0x7FF); };
  const I w[3] = {gather_bits<X>(kTurns[0] + 2, row), gather_bits<X>(kTurns[0] + 1, row),
                  gather_bits<X>(kTurns[0], row)};
  const I m = words.bits();
  const I m_high = (shift_right<32>(m) & uint64_t{0xFFFFF}) | uint64_t{0x100000};

  // Digits of 32 bits, from the lowest. m_high has 21 bits: no sum overflows.
  I product = multiply_wide(m, w[0]), carry = shift_right<32>(product), d[6];
  for (int k = 1; k < 6; ++k) {
    const I here = k % 2 ? shift_right<32>(w[k / 2]) : w[k / 2];
    const I before = k % 2 ? w[k / 2] : shift_right<32>(w[k / 2 - 1]);
    product = multiply_wide(m, here);
    const I sum = (product & digit) + multiply_wide(m_high, before) + carry;
    d[k] = sum & digit;
    carry = shift_right<32>(product) + shift_right<32>(sum);
  }
  return {shift_left<32>(d[5]) | d[4], shift_left<32>(d[3]) | d[2]};
}

// A number below 2^32 as a double, its unit being that of the last bit of `grid`.
template <class X, class I>
inline X on_grid(I word, const Row<double>& grid) {
  return bit_or(reals<X>(word), constant<X>(grid)) - grid;
}

// The reduction of finite |x| from 2 on.
template <class X>
inline Turn<X> reduce_by_digits(X x) {
  const auto& d = kTurnData;
  constexpr uint64_t digit = 0xFFFFFFFF;
  const auto f = turn_fraction(x);

  // 1. n is the nearest multiple of 1/512; 119 bits are left, in units of 1/512, the first of them a sign.
  const auto n = shift_right<55>(f.high + (uint64_t{1} << 54));
  const auto high = shift_left<9>(f.high) | shift_right<55>(f.low), low = shift_left<9>(f.low);

  // 2. Those bits as t + t_lo. Each sum is exact: a term is 0 or at least as large as the next.
  const auto flipped = shift_right<32>(high) ^ uint64_t { 0x80000000 };
  const X first = bit_or(reals<X>(flipped), constant<X>(d.grid[0])) - d.signed_grid;
  const auto s = fast_two_sum(first, on_grid<X>(high & digit, d.grid[1]));
  const auto t = fast_two_sum(s.high, on_grid<X>(shift_right<32>(low), d.grid[2]));
  const X t_lo = (s.low + t.low) + on_grid<X>(low & digit, d.grid[3]);

  // 3. Times pi/256; the leading product is exact.
  const auto part = split(t.high);
  const X leading = part.high * d.unit_hi;
  const X rest = part.high * d.unit_lo + (part.low + t_lo) * d.unit;
  const auto r = fast_two_sum(leading, rest);

  // 4. The sign of x turns all of them.
  const X sign = bit_and(x, broadcast_bits<X>(kSignBit<double>));
  const X signed_r = bit_xor(r.high, sign);
  return {bit_xor(on_grid<X>(n, d.grid0), sign) + d.shifter, signed_r, bit_xor(r.low, sign), signed_r};
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
