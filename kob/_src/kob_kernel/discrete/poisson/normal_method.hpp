// Poisson numbers as polynomials in normal ones: fast, and near the law, not exact. For blocks of numbers with means of
// their own; a mean that is the same for all is the simpler case of them.
#pragma once

#include "distribution.hpp"

namespace orx::rng::poisson {

#include "normal_method_100.inc"

// c[0] + c[1] x + ... by Horner's scheme.
template <int terms>
double polynomial(double x, const double (&c)[terms]) {
  double sum = c[terms - 1];
  for (int i = terms - 2; i >= 0; --i) sum = sum * x + c[i];
  return sum;
}

// Means from 1 to 128 by their exponent; a row as the script beside it tells, with the total variation from the law.
constexpr double iPoissC[7][24] = {
#include "normal_method.inc"
};

// e^mean for means below 1, to 3e-9.
constexpr double __kob_iExp[] = {0.9999999978976929,  1.000000235204182,    0.4999955588488526,
                                 0.16669916415448055, 0.0415487961378,      0.008565930750590653,
                                 0.00113698053,       0.0003351641595394528};

constexpr double kLeastForExpansion = 100, kLeastForRows = 1;

// Numbers below 0 are 0, those beyond the largest integer become that.
inline int32_t whole_part(double y) { return int32_t(std::min(std::max(y, 0.0), 2147483647.0)); }

// Normal numbers, in place, to Poisson numbers of means of 100 or more.
inline void by_expansion(int count, const double* mean, double* x) {
  for (int i = 0; i < count; ++i) {
    const double t = 1 / mean[i];
    const double shift = mean[i] + 1 + polynomial(t, __kob_iWc_100);
    const double y = root(mean[i] + polynomial(t, __kob_iSgm_100)) * x[i];
    const double q1 = polynomial(t, __kob_iQ1_100), q2 = polynomial(t, __kob_iQ2_100),
                 q3 = polynomial(t, __kob_iQ3_100);
    x[i] = shift + y + y * (q1 + y * (q2 + y * q3));
  }
}

// The same for means from 2^exponent up to twice that.
inline void by_row(int exponent, int count, const double* mean, double* x) {
  const double* const c = iPoissC[exponent];
  const double scale = 1.0 / (1 << exponent);
  for (int i = 0; i < count; ++i) {
    const double f = mean[i] * scale - 1;
    const auto cubic = [&](int k) { return c[k] + f * (c[k + 1] + f * (c[k + 2] + f * c[k + 3])); };
    const double constant = 1 + (c[0] + f * (c[3] + f * (c[4] + f * c[5])));
    const double z5 = c[1] + f * c[2], z6 = c[6];
    const double z = x[i];
    x[i] =
        constant + z * (cubic(7) + z * (cubic(11) + z * (cubic(15) + z * (cubic(19) + z * (z5 + z * z6)))));
  }
}

// Inversion without e^-mean: x, uniform on [0, e^mean), is held against the sums of mean^k / k!.
inline void by_series(int count, const double* mean, double* x) {
  for (int i = 0; i < count; ++i) {
    double sum = 1, term = 1, k = 0;
    for (int j = 1; j <= 10; ++j) {
      k += sum < x[i] ? 1 : 0;
      term *= mean[i] * (1.0 / j);
      sum += term;
    }
    x[i] = k;
  }
}

}  // namespace orx::rng::poisson
