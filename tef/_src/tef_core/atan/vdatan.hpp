// The angle of a point, double: what arc tangents of one and of two arguments share.
//
// The point is reflected into the octant 0 <= y <= x. There c is the nearest sixteenth to y/x, as far as an approximate
// reciprocal can tell, and by the formula of the tangent of a difference
//
//   atan(y/x) = atan c + atan t,  t = (y - c x)/(x + c y),  |t| < 1.02/32.
//
// y - c x is exact, and x + c y nearly so, as c has five bits. A table holds atan c, reflected back into the point's
// octant, and a short polynomial gives atan t. HA carries t in two parts.
#pragma once
#include <cfloat>

#include "atan/octants.hpp"

namespace orx::tef {
extern const double kAngleTable[4 * 17][2];
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct dAtanData {
  // Its last bit is worth 1/16: y/x added to it, the low bits count sixteenths, and rows of the table.
  Row<double> shifter = 0x1.8p+48;
  Row<double> next_octant = 17.0 / 16, behind = 34.0 / 16;
  // (atan t - t)/t^3, |t| <= 1.02/32: to 2^-70.2 of atan t, to 2^-61.9 of atan t, and to 2^-37.3 of atan t
  Row<double> ha[5] = {-0x1.5555555555555p-2, 0x1.9999999998372p-3, -0x1.249249148b7p-3, 0x1.c71bcc27a7ad1p-4,
                       -0x1.72dcee81a9338p-4};
  Row<double> la[4] = {-0x1.55555555554dcp-2, 0x1.9999999762919p-3, -0x1.24922f689e2f2p-3,
                       0x1.c630c1fcb5acep-4};
  Row<double> ep[2] = {-0x1.555551133eea8p-2, 0x1.992fbe2995a4ap-3};
};
inline constexpr dAtanData vdatan_data{};

// The octant of a point that was reflected: `shifter` leads y/x to its rows of the table, `sign` is that of t's part in the sum.
template <class X>
struct TableOctant {
  X shifter, sign;

  // Of the octants with x > 0: the first, or by the mask that around the y axis.
  explicit TableOctant(X steep)
      : shifter(vdatan_data.shifter + keep(steep, constant<X>(vdatan_data.next_octant))),
        sign(bit_and(steep, broadcast_bits<X>(kSignBit<double>))) {}
  // Of all with y > 0; x counts by its sign alone.
  TableOctant(X steep, X x) : TableOctant(steep) {
    shifter = shifter + select_by_sign(x, constant<X>(vdatan_data.behind), X{});
    sign = bit_xor(sign, bit_and(x, broadcast_bits<X>(kSignBit<double>)));
  }
};

// Of reflected points.
struct ReflectedHA {
  template <class X>
  using Octant = TableOctant<X>;
  // 0 < y <= x, both from 2^-60 to 2^60, or x at most 1 and y from 2^-120 on.
  template <class X>
  static X angle(X y, X x, const Octant<X>& octant) {
    // 1. The nearest sixteenth.
    const X reciprocal = approximate_reciprocal(x);
    const X N = y * reciprocal + octant.shifter;
    const X c = N - octant.shifter;

    // 2. t = q - t_lo: the quotient, and what it is too large by. For that 1/x does instead of the divisor's reciprocal:
    // they are alike where t is not small beside the sum. The dividend has the sign of -t.
    const X minus_dividend = product_residue(x, c, y);
    const auto parts = split(y);
    const X divisor = x + c * y;
    const X divisor_lo = (c * parts.high - (divisor - x)) + c * parts.low;
    const X dividend = bit_xor(bit_xor(minus_dividend, octant.sign), broadcast_bits<X>(kSignBit<double>));
    const X q = dividend / divisor;
    const auto digits = split(q);
    const X excess =
        product_residue(divisor, digits.high, dividend) + (digits.low * divisor + q * divisor_lo);
    const X t_lo = excess * reciprocal;

    // 3. The sum, from its large end.
    X angle, angle_lo;
    const SpilledWords<X> n(N);
    gather_pairs(
        kAngleTable[0], [&](int lane) { return n.low(lane) & 127; }, angle, angle_lo);
    const X square = q * q;
    const X rest = (q * square) * polynomial(square, square * square, vdatan_data.ha) - t_lo;
    const auto sum = fast_two_sum(angle, q);
    return sum.high + (sum.low + (angle_lo + rest));
  }
};

// The same, with what is in the class's reach.
template <bool ep>
struct ReflectedByDivision {
  template <class X>
  using Octant = TableOctant<X>;
  template <class X>
  static X angle(X y, X x, const Octant<X>& octant) {
    const X N = y * approximate_reciprocal(x) + octant.shifter;
    const X c = N - octant.shifter;
    const X t = bit_xor(subtract_product(y, c, x), octant.sign) / multiply_add(c, y, x);
    const SpilledWords<X> n(N);
    const X angle = gather<X>(kAngleTable[0], [&](int lane) { return 2 * (n.low(lane) & 127); });
    const X square = t * t;
    X p;
    if constexpr (ep)
      p = polynomial(square, square * square, vdatan_data.ep);
    else
      p = polynomial(square, square * square, vdatan_data.la);
    return angle + multiply_add(t * square, p, t);
  }
};

using dAngleHA = Angle<ReflectedHA>;
using dAngleLA = Angle<ReflectedByDivision<false>>;
using dAngleEP = Angle<ReflectedByDivision<true>>;

ORX_ISA_END
