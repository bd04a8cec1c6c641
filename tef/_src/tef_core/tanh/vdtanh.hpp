// tanh x, double. |x| = a + r, a the beginning of the cell that x lies in, 64 cells to each power of two; with t = tanh r
//
//   tanh |x| = T + (1 - T^2) t / (1 + T t),   T = tanh a.
//
// The second term is a small part of the first, r being at most x/64, so that its rounding errors do not count. Below
// 1/16 there is one cell more, whose a is 0.
#pragma once
#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

namespace orx::tef {
extern const double kTanhTable[1024][4];  // T, 1 - T^2, what T lacks
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct dTanhData {
  Row<double> small = 0x1p-4, below_small = 0x1.fffffffffffffp-5;
  Row<double> top = 19.25;                         // the result is 1 from 19.0616 on
  Row<uint64_t> cell = 0xFFFFC00000000000;         // the bits that a cell's arguments share
  Row<uint64_t> row = 0x00FFC00000000000;          // those of them that tell its row
  Row<double> large = 0x1p-180, least = 0x1p-120;  // against powers that underflow
  Row<double> one = 1.0;
  // (tanh r - r) / r^3, |r| <= 1/16: to 2^-66.9 of tanh r, to 2^-55.6 of tanh r and to 2^-32.9 of tanh r. Where r is
  // larger, 1 - T^2 is small.
  Row<double> ha[5] = {-0x1.5555555555554p-2, 0x1.111111110e9ep-3, -0x1.ba1ba18c2215dp-5,
                       0x1.664e8d8bffce6p-6, -0x1.2116332e632cap-7};
  Row<double> la[4] = {-0x1.5555555554b3dp-2, 0x1.11111104cde4ep-3, -0x1.ba1b0d8a62dc9p-5,
                       0x1.64ee3f845ff05p-6};
  Row<double> ep[2] = {-0x1.55553d94a37c9p-2, 0x1.1077722f5ef64p-3};
};
inline constexpr dTanhData vdtanh_data{};

// |x|, and r, in registers: the words that tell its cell's row go through memory.
template <class X>
struct TanhCell {
  X size, r;

  explicit TanhCell(X x)
      : size(min(magnitude(x), vdtanh_data.top)),
        r(size - keep(not_below(size, vdtanh_data.small), bit_and(size, vdtanh_data.cell))) {}

  // tanh |x|, from all of T.
  X accurate_tanh() const {
    const auto& d = vdtanh_data;
    const X q = (r + d.large) - d.large, r2 = q * q;
    const X t = r + (q * r2) * horner(r2, d.ha);
    const SpilledWords<X> words = row_words();
    const auto place = [&](int lane) { return words.high(lane) >> 12; };
    X row[4];
    gather_pairs<1>(kTanhTable[0], place, row[0], row[1]);
    gather_pairs<1>(kTanhTable[0] + 2, place, row[2], row[3]);
    const X T = row[0], slope = row[1], T_lo = row[2];
    return T + (T_lo + slope * t / (d.one + T * t));
  }
  // The same from T in one double, and tanh r by the polynomial c.
  template <int terms>
  X tanh(const Row<double> (&c)[terms]) const {
    const auto& d = vdtanh_data;
    const X q = keep(not_below(r, d.least), r), r2 = q * q;
    const X t = r + (q * r2) * polynomial(r2, r2 * r2, c);
    const SpilledWords<X> words = row_words();
    X T, slope;
    gather_pairs<1>(
        kTanhTable[0], [&](int lane) { return words.high(lane) >> 12; }, T, slope);
    return T + slope * t / (d.one + T * t);
  }

 private:
  // High words that are 2^12 times where the cell's row begins.
  SpilledWords<X> row_words() const {
    return SpilledWords<X>(bit_and(max(size, vdtanh_data.below_small), vdtanh_data.row));
  }
};

ORX_ISA_END
