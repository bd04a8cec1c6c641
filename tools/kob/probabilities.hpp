// Tails of the distributions that the tests' statistics have.
#pragma once

#include <cmath>

// How likely it is to come out as low as that, and as high.
struct Tails {
  double left, right;
  double least() const { return std::fmin(left, right); }
};

namespace tails {

// The regularized incomplete gamma functions P(a, x) and Q(a, x): the series below a + 1, Legendre's continued
// fraction by Lentz's method above (W. H. Press et al., Numerical Recipes, 6.2; NIST DLMF 8.11.4, 8.9.2).
inline Tails gamma(double a, double x) {
  if (x <= 0) return {0, 1};
  const double front = std::exp(a * std::log(x) - x - std::lgamma(a));
  if (x < a + 1) {
    double term = 1 / a, sum = term;
    for (double n = a + 1; term > sum * 1e-17; ++n) sum += term *= x / n;
    const double p = std::fmin(1, front * sum);
    return {p, 1 - p};
  }
  double b = x + 1 - a, c = 1e300, d = 1 / b, h = d, change = 0;
  for (int i = 1; i < 100000 && std::fabs(change - 1) > 1e-16; ++i) {
    const double numerator = -i * (i - a);
    b += 2;
    d = 1 / (numerator * d + b);
    c = b + numerator / c;
    h *= change = d * c;
  }
  const double q = std::fmin(1, front * h);
  return {1 - q, q};
}

inline Tails chi_square(double degrees, double x) { return gamma(degrees / 2, x / 2); }

// At most, and at least, `count` of a Poisson variable.
inline Tails poisson(double mean, double count) {
  return {gamma(count + 1, mean).right, count == 0 ? 1 : gamma(count, mean).left};
}

// The linear complexity l of n random bits has the probability 2^min(2n - 2l, 2l - 1) / 2^n (R. A. Rueppel,
// Analysis and Design of Stream Ciphers, Springer 1986).
inline Tails linear_complexity(int n, int l) {
  const auto at_most = [n](int m) { return std::ldexp(2.0 / 3, 2 * m - n); };   // m <= n / 2
  const auto at_least = [n](int m) { return std::ldexp(4.0 / 3, n - 2 * m); };  // m > n / 2
  if (2 * l <= n) return {at_most(l), 1 - at_most(l - 1)};
  return {1 - at_least(l + 1), 2 * (l - 1) <= n ? 1 - at_most(l - 1) : at_least(l)};
}

}  // namespace tails
