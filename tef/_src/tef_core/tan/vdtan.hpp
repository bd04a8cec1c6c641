// tan x, double: x = n pi/2 + y, |y| <= pi/4, and tan x is tan y, or where n is odd -1/tan y.
//
// HA: y = t + r, t one of 128 multiples of pi/256, and tan y = (tan t + tan r)/(1 - tan t tan r), tan t from a table. Its
// terms are sums of a large part, which is exact, and a small one.
// LA: tan y is a polynomial over 1 - (2 y/pi)^2, which has the nearest poles of the tangent and is hardly rounded.
#pragma once
#include "sin/vdsincos.hpp"

namespace orx::tef {
extern const double kTanTable[128][2];  // tan t, what it lacks; t = j pi/256, and from 64 on (j - 128) pi/256
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct dTanData {
  Row<double> one = 1.0, half_table = 64.0;
  // (tan r - r)/r^3, |r| <= pi/512, to 2^-71 of tan r
  Row<double> c[3] = {0x1.5555555555559p-2, 0x1.1111110fe875ap-3, 0x1.ba1eeb54a2829p-5};
};
inline constexpr dTanData vdtan_data{};

template <class X>
struct Fraction {
  HighLow<X> above, below;
};

// The quotient of sums whose small terms are below the last bits of the large ones, to 2^-60: half of its digits, then the rest.
template <class X>
inline X accurate_quotient(const Fraction<X>& f) {
  const auto &a = f.above, &b = f.below;
  const X reciprocal = vdtan_data.one / b.high;
  const X q = split(a.high * reciprocal).high;
  const auto divisor = split(b.high);
  const X rest = ((a.high - q * divisor.high) - q * divisor.low) + (a.low - q * b.low);
  return q + rest * reciprocal;
}

// above/below, or where `odd` is negative -below/above.
template <class X>
inline Fraction<X> in_quadrant(const Fraction<X>& f, X odd) {
  const auto either = [&](const HighLow<X>& a, const HighLow<X>& b) {
    return HighLow<X>{select_by_sign(odd, a.high, b.high), select_by_sign(odd, a.low, b.low)};
  };
  return {either(f.below, f.above), either(f.above, f.below)};
}

// The same as a number, with `odd` nothing but a sign.
template <class X>
inline X quotient_in_quadrant(X above, X below, X odd) {
  return select_by_sign(odd, below, above) / bit_xor(select_by_sign(odd, above, below), odd);
}

// tan x, by the table; a zero may have the wrong sign.
template <class X>
inline X tangent_of(const Turn<X>& turn) {
  const auto& d = vdtan_data;
  // 1. tan r - r, with the low part of r.
  const X square = turn.q * turn.q;
  const X u = multiply_add(turn.q * square, horner(square, d.c), turn.r_lo);

  // 2. tan t + tan r and 1 - tan t tan r.
  const SpilledWords<X> n(turn.N);
  X t, t_lo;
  gather_pairs(
      kTanTable[0], [&](int lane) { return n.low(lane) & 127; }, t, t_lo);
  const auto sum = fast_two_sum(t, turn.r);
  const X product = t * (turn.r + u), rest = d.one - product;
  const Fraction<X> f{fast_two_sum(sum.high, sum.low + (t_lo + u)), {rest, (d.one - rest) - product}};

  // 3. In an odd quarter the inverse of that, turned over.
  const X odd = reals<X>(shift_left<56>(bits(turn.N + d.half_table)));
  return bit_xor(accurate_quotient(in_quadrant(f, odd)), bit_and(odd, broadcast_bits<X>(kSignBit<double>)));
}

// Results that are 0 take the sign of x.
template <class X>
inline X with_zeros_of(X y, X x) {
  return bit_or(y, keep(equal(y, X{}), bit_and(x, broadcast_bits<X>(kSignBit<double>))));
}

// The scalar routine, for what is not finite; the status to report.
int vdtan_cout_rare(const double* a, double* r);

inline constexpr Row<double> kTanFrom = 0x1.fff8p+15;

struct dTanKernel : PeriodicKernel<double, kTanFrom> {
  static int rare_lane(const double* a, double* r) { return vdtan_cout_rare(a, r); }
};
struct dTanByTable : dTanKernel {
  template <class X>
  static X eval(X x) {
    return with_zeros_of(tangent_of(reduce_by_table_steps(x)), x);
  }
  template <class X>
  static X eval_far(X x) {
    return tangent_of(reduce_by_digits(x));
  }
};

struct dTanRationalData {
  Row<double> one = 1.0;
  // tan y = (y - y^3 a(y^2))/(1 - b y^2), |y| <= pi/4, b = 4/pi^2, to 2^-56.4 of tan y
  Row<double> a[7] = {0x1.26b683335c787p-4,  0x1.cdc982db6255p-10,  0x1.24633b49c58d4p-14,
                      0x1.9576d6351bd83p-19, 0x1.20801bb52c68cp-23, 0x1.9ba4f61cb8682p-28,
                      0x1.4cd5c6eba1bc4p-32};
  Row<double> b = 0x1.9f02f6222c72p-2;
};
inline constexpr dTanRationalData vdtan_la_data{};

struct dTanRational : dTanKernel {
  template <class X>
  static X eval(X x) {
    return quotient(reduce_by_table_steps<kQuarterTurn>(x));
  }
  template <class X>
  static X eval_far(X x) {
    return quotient(reduce_by_digits<kQuarterTurn>(x));
  }

 private:
  // tan of n quarters of a turn and r.
  template <class X>
  static X quotient(const Turn<X>& t) {
    const auto& d = vdtan_la_data;
    const X z = t.q * t.q;
    const X above = t.r - multiply_subtract(t.q * z, polynomial(z, z * z, d.a), t.r_lo);
    const X below = d.one - z * d.b;
    return quotient_in_quadrant(above, below, last_bit_as_sign(t.N));
  }
};

ORX_ISA_END
