// The gamma function's logarithm and the chi-square law, in extended precision.
#pragma once

#include "_math/extended.hpp"

namespace orx::extended {

// ln gamma(1 + d) for |d| <= 1/32, by the zeta function: -euler d + sum over k of zeta(k) (-d)^k / k.
inline Real ln_gamma_near_1(Real d) {
  constexpr Real c[] = {-0.577215664901532860606512090082L, 0.822467033424113218236207583323L,
                        -0.400685634386531428466579387170L, 0.270580808427784547879000924135L,
                        -0.207385551028673985266273097291L, 0.169557176997408189952419654965L,
                        -0.144049896768846118119971078549L, 0.125509669524743042422335654814L,
                        -0.111334265869564690490872529915L, 0.100099457512781808533714595890L,
                        -0.090954017145829042232609313159L, 0.083353840546109004024886499837L};
  return d * polynomial(d, c);
}

// ln gamma x for x >= 16, by Stirling's series.
inline Real ln_gamma_far(Real x) {
  constexpr Real half_ln_2pi = 0.918938533204672741780329736406L;
  constexpr Real c[] = {1.0L / 12,         -1.0L / 360,        1.0L / 1260, -1.0L / 1680,
                        1.0L / 1188,       -691.0L / 360360,   1.0L / 156,  -3617.0L / 122400,
                        43867.0L / 244188, -174611.0L / 125400};
  return (x - 0.5L) * ln(x) - x + half_ln_2pi + polynomial(1 / (x * x), c) / x;
}

// ln |gamma x|: infinite at 0 and the negative integers.
inline Real ln_gamma(Real x) {
  constexpr Real pi = 3.14159265358979323846264338328L, near = 1.0L / 32;
  if (x != x) return x;
  if (magnitude(x) == kInfinity) return kInfinity;
  if (x < 0.5L) {
    // By reflection, with the sine of what is left of the nearest integer.
    const Real rest = x - nearest_integer(x);
    return rest == 0 ? kInfinity : ln(pi / magnitude(sine(pi * rest))) - ln_gamma(1 - x);
  }
  if (magnitude(x - 1) <= near) return ln_gamma_near_1(x - 1);
  if (magnitude(x - 2) <= near) return ln_of_one_plus(x - 2) + ln_gamma_near_1(x - 2);
  Real product = 1;
  for (; x < 16; ++x) product *= x;
  return ln_gamma_far(x) - ln(product);
}

// y^a e^-y / gamma(a), which is y times the density of the gamma law.
inline Real gamma_density_times(Real a, Real y) { return exp(a * ln(y) - y - ln_gamma(a)); }

// The lower tail of the gamma law of shape a, as a series; good for y up to a and a little more.
inline Real lower_tail_series(Real a, Real y) {
  Real sum = 1, term = 1;
  for (Real b = a + 1; term > sum * kEpsilon; ++b) sum += term *= y / b;
  return gamma_density_times(a, y) * sum / a;
}

// The upper tail for y above 1 and a, as a continued fraction by Lentz's method.
inline Real upper_tail_fraction(Real a, Real y) {
  Real b = y + 1 - a, c = kInfinity, d = 1 / b, fraction = d;
  for (Real i = 1;; ++i) {
    const Real numerator = i * (a - i);
    b += 2;
    d = 1 / (b + numerator * d);
    c = b + numerator / c;
    const Real change = c * d;
    fraction *= change;
    if (magnitude(change - 1) <= 2 * kEpsilon) return gamma_density_times(a, y) * fraction;
  }
}

inline bool in_upper_part(Real a, Real y) { return y > 1 && y > a; }

inline Real _vdSSQ(Real a, Real y) {
  if (!(a > 0 && y > 0)) return y != y ? y : 1;
  if (y == kInfinity) return 0;
  return in_upper_part(a, y) ? upper_tail_fraction(a, y) : 1 - lower_tail_series(a, y);
}

inline Real lower_tail(Real a, Real y) {
  if (!(a > 0 && y > 0)) return y != y ? y : 0;
  return in_upper_part(a, y) ? 1 - _vdSSQ(a, y) : lower_tail_series(a, y);
}

// The chi-square law with k degrees of freedom: both tails and the density.
inline Real chi2_lower(int k, Real x) { return lower_tail(Real(k) / 2, x / 2); }
inline Real chi2_upper(int k, Real x) { return _vdSSQ(Real(k) / 2, x / 2); }
inline Real chi2_density(int k, Real x) {
  if (!(x > 0)) return x != x ? x : 0;
  return k < 1 || x == kInfinity ? 0 : gamma_density_times(Real(k) / 2, x / 2) / x;
}

// The y that has `tail` of the gamma law of shape a below or above it, by Newton's method in u = ln y on the logarithm
// of the tail. That is concave in u, for the lower tail and for the upper one: each begins on the side of the root
// from which no step goes beyond it.
inline Real gamma_quantile(Real a, Real tail, bool upper) {
  const Real ln_tail = ln(tail);
  Real u = upper ? ln(a + root(-2 * a * ln_tail) - ln_tail)  // an upper bound (Laurent and Massart 2000)
                 : (ln_tail + ln_gamma(a + 1)) / a;          // the tail is y^a / gamma(a + 1) at most
  for (int round = 0; round < 200; ++round) {
    const Real y = exp(u), reached = upper ? _vdSSQ(a, y) : lower_tail(a, y);
    const Real slope = gamma_density_times(a, y) / reached;
    const Real step = (ln(reached) - ln_tail) / slope;
    if (!(magnitude(step) < kInfinity)) break;  // y is beyond the range of numbers
    u += upper ? step : -step;
    if (magnitude(step) < 4 * kEpsilon * (1 + magnitude(u))) break;
  }
  return exp(u);
}

// Infinity where nothing is left above, NaN for what is no probability.
inline Real chi2_upper_quantile(int k, Real tail) {
  if (k < 1 || !(tail >= 0 && tail <= 1)) return std::numeric_limits<Real>::quiet_NaN();
  if (tail == 0) return kInfinity;
  if (tail == 1) return 0;
  return 2 * gamma_quantile(Real(k) / 2, tail, true);
}
inline Real chi2_quantile(int k, Real probability) {
  if (k < 1 || !(probability > 0 && probability <= 0.5L)) return chi2_upper_quantile(k, 1 - probability);
  return 2 * gamma_quantile(Real(k) / 2, probability, false);
}

}  // namespace orx::extended
