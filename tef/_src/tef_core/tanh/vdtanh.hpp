// tanh x, double. |x| = a + r, a the middle of the cell that x lies in, 32 cells to each power of two; with t = tanh r
//
//   tanh |x| = T + (1 - T^2) t / (1 + T t),   T = tanh a.
//
// The second term is a small part of the first, |r| being at most x/64, so that its rounding errors do not count. Below
// 1/16 there is one cell more, whose a is 0.
#pragma once
#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

namespace orx::tef {
extern const double kTanhTable[264][4];  // T, 1 - T^2, what T lacks
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct dTanhData {
  Row<double> small = 0x1p-4, below_small = 0x1.fffffffffffffp-5;
  Row<double> top = 19.25;  // the result is 1 from 19.0616 on
  // The bits that a cell's arguments share, and the next one, which leads to its middle.
  Row<uint64_t> cell = 0xFFFF800000000000, middle = 0x0000400000000000;
  Row<double> large = 0x1p-180;  // takes r away where it is tiny and its square would underflow
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

// The cell of |x|, and tanh r from one of the polynomials.
template <class X>
struct TanhCell {
  X size, t;
  SpilledWords<X> n;

  template <int terms>
  TanhCell(X x, const Row<double> (&c)[terms])
      : size(min(magnitude(x), vdtanh_data.top)), n(max(size, vdtanh_data.below_small)) {
    const auto& d = vdtanh_data;
    const X a = keep(not_below(size, d.small), bit_or(bit_and(size, d.cell), constant<X>(d.middle)));
    const X r = size - a;
    const X q = (r + d.large) - d.large, r2 = q * q;
    t = r + (q * r2) * polynomial(r2, r2 * r2, c);
  }
  // tanh |x|, without the low part of T and with it.
  X tanh() const {
    X T, slope;
    gather_pairs<4>(kTanhTable[0], *this, T, slope);
    return T + slope * t / (vdtanh_data.one + T * t);
  }
  X accurate_tanh() const {
    X row[4];
    gather_rows(kTanhTable[0], *this, row);
    const X T = row[0], slope = row[1], T_lo = row[2];
    return T + (T_lo + slope * t / (vdtanh_data.one + T * t));
  }
  // The row of the table.
  int operator()(int lane) const { return (n.high(lane) >> 15) - (((1023 - 4) << 5) - 1); }
};

ORX_ISA_END
