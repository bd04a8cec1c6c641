// tan x = sin x/cos x, double.
//
// HA: both as the sine is made, from a table of both at multiples of pi/256, in two parts each, and their quotient.
// LA: x = n pi/2 + r, |r| <= pi/4, a polynomial for each of the two, and one division.
#pragma once
#include "sin/vdsincos.hpp"

namespace orx::tef {
extern const double kTanTable[256][4];  // sin t, what it lacks, cos t, what it lacks; t = j pi/256
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct dTanData {
  Row<double> one = 1.0;
  Row<double> four_thirds = 0x1.5555555555555p+0;  // the power of two next to y is that below 4/3 y
  Row<uint64_t> power = 0xFFF0000000000000;
};
inline constexpr dTanData vdtan_data{};

// sin x and cos x, each as a large part and a small rest. Both signs may be wrong.
template <class X>
struct SineAndCosine {
  HighLow<X> sine, cosine;

  explicit SineAndCosine(const Turn<X>& t) {
    const SmallSineCosine<X> f(t);
    const SpilledWords<X> n(t.N);
    X row[4];
    gather_rows(
        kTanTable[0], [&](int lane) { return n.low(lane) & 255; }, row);
    const X sin_hi = row[0], sin_lo = row[1], cos_hi = row[2], cos_lo = row[3];
    sine = rotated(sin_hi, sin_lo, cos_hi, cos_lo, t.r, f);
    cosine = rotated(cos_hi, cos_lo, X{} - sin_hi, X{} - sin_lo, t.r, f);
  }

 private:
  // a cos r + b sin r: the power of two next to b, times r, is exact.
  static HighLow<X> rotated(X a, X a_lo, X b, X b_lo, X r, const SmallSineCosine<X>& f) {
    const X power = bit_and(b * vdtan_data.four_thirds, constant<X>(vdtan_data.power));
    const auto sum = fast_two_sum(a, power * r);
    return {sum.high, ((a_lo + a * f.c) + (((b - power) + b_lo) * r + b * f.s)) + sum.low};
  }
};

// The quotient of sums a and b, to 2^-60: one of its digits by an approximate reciprocal, the next from what is left.
template <class X>
inline X accurate_quotient(const HighLow<X>& a, const HighLow<X>& b) {
  const auto& d = vdtan_data;
  const auto divisor = fast_two_sum(b.high, b.low);
  const X guess = approximate_reciprocal(divisor.high);
  const X e = d.one - divisor.high * guess;
  const X reciprocal = guess + guess * (e + e * e);
  const X q = split((a.high + a.low) * reciprocal).high;
  const auto D = split(divisor.high);
  const X rest = ((a.high - q * D.high) - q * D.low) + (a.low - q * divisor.low);
  return q + rest * reciprocal;
}

// Results that are 0 take the sign of x.
template <class X>
inline X with_zeros_of(X y, X x) {
  return bit_or(y, keep(equal(y, X{}), bit_and(x, broadcast_bits<X>(kSignBit<double>))));
}

// The scalar routine, for what is not finite; the status to report.
int vdtan_cout_rare(const double* a, double* r);

// Large arguments go by the digits of 1/(2 pi) in both classes.
struct dTanKernel : Kernel<double(double)> {
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const SineAndCosine<X> f(reduce_by_digits(x));
    left.finish(at_most(magnitude(x), kLargest), accurate_quotient(f.sine, f.cosine));
  }
  static int rare_lane(const double* a, double* r) { return vdtan_cout_rare(a, r); }

 private:
  static constexpr Row<double> kLargest = DBL_MAX;
};
struct dTanQuotient : dTanKernel {
  template <class X>
  static auto rare(X x) {
    return not_below(magnitude(x), kFrom);
  }
  template <class X>
  static X eval(X x) {
    const SineAndCosine<X> f(reduce_by_table_steps(x));
    return with_zeros_of(accurate_quotient(f.sine, f.cosine), x);
  }

 private:
  static constexpr Row<double> kFrom = 0x1.fff8p+15;
};

struct dTanPolynomialData {
  Row<double> inv = 0x1.45f306dc9c883p-1;  // 2/pi
  Row<double> shifter = 0x1.8p+52;
  Row<double> p1 = 0x1.921fb544p+0, p2 = 0x1.0b4611a6p-34,
              p3 = 0x1.3198a2e037073p-69;  // pi/2, as in vdsin_data_ha
  Row<double> large = 0x1p-180, one = 1.0, half = 0.5;
  // (sin r - r)/r^3 and (cos r - 1 + r^2/2)/r^4, |r| <= pi/4, to 2^-57.8 of the sine
  // and to 2^-63.9 of the cosine
  Row<double> s[6] = {-0x1.5555555555548p-3, 0x1.111111110f75ep-7,   -0x1.a01a019bf2523p-13,
                      0x1.71de355f3628cp-19, -0x1.ae5e549c421c4p-26, 0x1.5d8e4234a0139p-33};
  Row<double> c[6] = {0x1.555555555554bp-5,   -0x1.6c16c16c15017p-10, 0x1.a01a019c8f66bp-16,
                      -0x1.27e4f7f1c1054p-22, 0x1.1ee9dbec7010ap-29,  -0x1.8fa6917123386p-37};
};
inline constexpr dTanPolynomialData vdtan_la_data{};

struct dTanPolynomial : dTanKernel {
  template <class X>
  static auto rare(X x) {
    return not_below(magnitude(x), kFrom);
  }
  template <class X>
  static X eval(X x) {
    const auto& d = vdtan_la_data;
    const X N = x * d.inv + d.shifter;
    const X n = N - d.shifter;
    const X r1 = x - n * d.p1, w = n * d.p2;
    const X r = r1 - w, r_lo = ((r1 - r) - w) - n * d.p3;
    const X q = without_tiny(r, d.large), r2 = q * q, r4 = r2 * r2;
    const X sine = r + ((q * r2) * polynomial(r2, r4, d.s) + r_lo);
    const X half_square = r2 * d.half;
    const auto leading = fast_two_sum(constant<X>(d.one), X{} - half_square);
    const X cosine = leading.high + (leading.low + (r4 * polynomial(r2, r4, d.c) - q * r_lo));
    // A quarter of a turn exchanges the two and turns one of them over.
    const X odd = reals<X>(shift_left<63>(bits(N)));
    const auto exchange = spread_signs(odd);
    return with_zeros_of(select(exchange, cosine, sine) / bit_xor(select(exchange, sine, cosine), odd), x);
  }

 private:
  static constexpr Row<double> kFrom = 0x1.fff8p+15;
};

ORX_ISA_END
