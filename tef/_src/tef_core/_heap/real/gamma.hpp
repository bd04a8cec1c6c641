// What the gamma functions share: both, and sin(pi x)/pi for their reflection, by rows of a table, Stirling's series for
// arguments from 8 on, and numbers in two parts.
//
// After the formulas of the Digital Library of Mathematical Functions, sections 5.5 and 5.11.
#pragma once
#include "exp/vdexp.hpp"
#include "ln/vdln.hpp"

namespace orx::tef {
// A row: the value at a, a slope of 4 bits, what the value lacks, and a polynomial in r for what is left of the change at a + r.
constexpr int kGammaColumns = 14, kGammaTerms = kGammaColumns - 2;
extern const double kLGammaRows[57][kGammaColumns];      // ln gamma for a = k/8, k = 8 .. 64
extern const double _tgamma_A_table[57][kGammaColumns];  // gamma for the same
extern const double kSingleGammaRows[273][8];  // gamma for a = k/8, k = 8 .. 280, by powers of r alone
extern const double _tgamma_sin_table[9][kGammaColumns];  // sin(pi a)/pi for a = k/16, k = 0 .. 8
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

using TwoParts = HighLow<double>;

// x to the nearest integer, and its last bits: |x| < 2^51, or 0 <= x < 2^52 with the shifter 2^52.
struct Nearest {
  double value;
  uint32_t bits;
  explicit Nearest(double x, double shifter = 0x1.8p+52) {
    const double sum = x + shifter;
    value = sum - shifter;
    bits = static_cast<uint32_t>(bit_cast<uint64_t>(sum));
  }
};

// The leading 26 bits, after Veltkamp, of |x| below 2^995.
inline double leading_bits(double x) {
  const double t = x * (0x1p27 + 1);
  return t - (t - x);
}

// The product with its rounding error; factors far from the ends of the range.
inline TwoParts product_in_parts(double a, double b) {
  const double a_high = leading_bits(a), a_low = a - a_high, b_high = leading_bits(b), b_low = b - b_high;
  const double p = a * b;
  return {p, ((a_high * b_high - p) + (a_high * b_low + a_low * b_high)) + a_low * b_low};
}
inline TwoParts product_in_parts(TwoParts a, TwoParts b) {
  const TwoParts p = product_in_parts(a.high, b.high);
  return {p.high, p.low + (a.high * b.low + a.low * b.high)};
}
// To 2^-100 or so, rounded once.
[[gnu::always_inline]] inline double quotient(TwoParts a, TwoParts b) {
  const double reciprocal = 1 / b.high, q = a.high * reciprocal;
  const TwoParts back = product_in_parts(q, b.high);
  const double rest = ((a.high - back.high) - back.low) + (a.low - q * b.low);
  return q + rest * reciprocal;
}

[[gnu::always_inline]] inline TwoParts value_from_row(const double* row, double r) {
  const auto sum = fast_two_sum(row[0], row[1] * r);
  const double* c = row + 2;
  const double r2 = r * r, r4 = r2 * r2;
  double p = 0;
  for (int i = kGammaTerms - 4; i >= 0; i -= 4)
    p = p * r4 + ((c[i] + c[i + 1] * r) + (c[i + 2] + c[i + 3] * r) * r2);
  return fast_two_sum(sum.high, sum.low + p);
}

// Of a function with rows for k/8 at x + shift, 1 <= x + shift <= 8 nearly; the sum may be no double.
inline TwoParts from_gamma_rows(const double (&table)[57][kGammaColumns], double x, double shift) {
  const Nearest k((x + shift) * 8);
  return value_from_row(table[k.bits - 8], x - (k.value * 0.125 - shift));
}
// sin(pi f)/pi, 0 < f <= 1/2.
inline TwoParts sine_of_turns(double f) {
  const Nearest k(f * 16);
  return value_from_row(_tgamma_sin_table[k.bits], f - k.value * 0.0625);
}

// ln x to 2^-68; the first part is a multiple of 2^-16.
inline TwoParts log_in_parts(double x) {
  using X = Vec<double, 1>;
  double shift = 0;
  if (x < DBL_MIN) {
    x *= 0x1p60;
    shift = 60;
  }
  const auto& d = LnDescription::kData;
  const X v = broadcast<X>(hidden(x));
  Indices<X> R;
  const X reduced = log_reduce<LnDescription>(log_fraction(v), R).e;
  const double e = reduced.v[0][0], q = LnDescription::polynomial_ha(reduced).v[0][0];
  const double k = exponent_field(v).v[0][0] - shift;
  const double* T = _tefdLnHATab[R(0) - LnDescription::kFirst];
  const double large = k * d.L_hi.lane[0] + T[0];  // exact
  const double grid = 0x1.8p+36;
  const double high = ((large + e) + grid) - grid;
  return {high, ((large - high) + e) + ((k * d.L_lo.lane[0] + T[1]) + q)};
}

// ln gamma(x) where half is -1/2, ln gamma(1 + x) where it is 1/2; x from 7 on, to 2^-62 of it. The parts overlap.
inline TwoParts stirling(double x, double half) {
  // ln gamma x = (x - 1/2) ln x - x + ln(2 pi)/2 + s(1/x^2)/x, s to 2^-54 of the series
  constexpr double series[8] = {0x1.5555555555555p-4,   -0x1.6c16c16c11d11p-9, 0x1.a01a017517e59p-11,
                                -0x1.381356f8dacabp-11, 0x1.b93bcaf4e76c1p-11, -0x1.f35f6e34ded73p-10,
                                0x1.7fb6c4b58b13ep-8,   -0x1.02f54cd9c91e1p-6};
  constexpr double half_log_2pi = 0x1.d67f2p-1, half_log_2pi_low = -0x1.bcda0a5acb6b4p-24;
  const TwoParts log = log_in_parts(x);
  double s = 0;
  if (x < 0x1p100) {
    const double reciprocal = 1 / x, z = reciprocal * reciprocal;
    for (int i = 7; i >= 0; --i) s = s * z + series[i];
    s *= reciprocal;
  }
  // The logarithm's first part is short enough for an exact product with a half of x.
  const double x_high = leading_bits(x * 0x1p-64) * 0x1p64, x_low = x - x_high;
  const auto linear = fast_two_sum(-x, half * log.high + half_log_2pi);
  const auto sum = fast_two_sum(x_high * log.high, linear.high);
  const double rest = (x_low * log.high + x * log.low) + (half * log.low + (half_log_2pi_low + s));
  return {sum.high, (sum.low + linear.low) + rest};
}

// e^(high + low) = scale (value), scale being 2^(k - orders).
struct ScaledParts {
  double scale;
  TwoParts value;
};
template <int orders>
inline ScaledParts exponential_in_parts(TwoParts exponent) {
  // As e^x is made in vdexp.cpp, with every fourth row; the second part joins the reduced argument.
  const double shifter = 0x1.8p+52 + 64 * (1023 - orders);
  const double N = hidden(exponent.high * 0x1.71547652b82fep+6 + shifter);
  const double Nf = N - shifter;
  const double* T = _tefdExpHATab[4 * (static_cast<uint32_t>(bit_cast<uint64_t>(N)) & 63)];
  const double r = ((exponent.high - Nf * 0x1.62e42fefap-7) - Nf * 0x1.cf79abc9e3b3ap-46) + exponent.low;
  constexpr double c[6] = {1.0 / 2, 1.0 / 6, 1.0 / 24, 1.0 / 120, 1.0 / 720, 1.0 / 5040};
  const double r2 = r * r;
  const double p = r + r2 * ((c[0] + r * c[1]) + r2 * ((c[2] + r * c[3]) + r2 * (c[4] + r * c[5])));
  return {scale_from<6>(broadcast<Vec<double, 1>>(N)).v[0][0], fast_two_sum(T[0], T[0] * (p + T[1]))};
}

// A negative number's distance f from the nearest integer, and whether that is odd.
struct Reflection {
  double f;
  bool odd;
  explicit Reflection(double size) {
    const Nearest n(size, 0x1p+52);  // a larger shifter would lose odd numbers from 2^51 on
    f = size - n.value;
    odd = n.bits & 1;
  }
};

ORX_ISA_END
