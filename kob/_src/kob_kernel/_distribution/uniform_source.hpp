// Uniforms one by one, and Poisson numbers each with a mean of its own.
#pragma once

#include "_math/scalar.hpp"
#include "distribution.hpp"

namespace orx::rng {

// Draws blocks ahead; what is left at the end of its life is lost.
class UniformSource {
 public:
  explicit UniformSource(KobStream* stream) : stream_(stream) {}

  // After a failure, which status() tells, numbers that end every search.
  double next() {
    if (left_ == 0) {
      if (status_ >= 0) status_ = uniform(stream_, kAhead, buffer_);
      if (status_ < 0) return 0.5;
      left_ = kAhead;
    }
    return buffer_[--left_];
  }
  int status() const { return status_; }

  // W. Hormann, The transformed rejection method for generating Poisson random variables, Insurance Math. Econom. 12
  // (1993), PTRS; below a mean of 10 by counting down. Exact; for means that are used once.
  double poisson(double mean) { return mean < 10 ? counted(mean) : transformed(mean); }

 private:
  static constexpr int kAhead = 256;

  // Products of uniforms would be rounded to few bits: terms of the series instead.
  double counted(double mean) {
    double k = 0, term = exp_of_minus(mean);
    for (double u = next(); u >= term && k < 200; u -= term, term *= mean / k) ++k;
    return k;
  }

  double transformed(double mean) {
    const double b = 0.931 + 2.53 * root(mean), a = -0.059 + 0.02483 * b;
    const double inverse_alpha = 1.1239 + 1.1328 / (b - 3.4), vr = 0.9277 - 3.6224 / (b - 2);
    for (;;) {
      const double u = next() - 0.5, v = next(), us = 0.5 - __builtin_fabs(u);
      const double k = __builtin_floor((2 * a / us + b) * u + mean + 0.43);
      if ((us >= 0.07 && v <= vr) || status_ < 0) return k;
      if (k < 0 || (us < 0.013 && v > us)) continue;
      const double bound = __kobdLn(v * inverse_alpha / (a / (us * us) + b));
      if (bound <= ln_probability(k, mean)) return k;
    }
  }

  // k ln mean - mean - ln k!, in terms that do not cancel.
  static double ln_probability(double k, double mean) {
    const double x = k + 1, inverse = 1 / x, square = inverse * inverse;
    const double delta = inverse * (1 / 12.0 - square * (1 / 360.0 - square * (1 / 1260.0 - square / 1680)));
    constexpr double half_ln_two_pi = 0.91893853320467274;
    return (x - 0.5) * __kobdLn(mean / x) - 0.5 * __kobdLn(mean) + (x - mean) - half_ln_two_pi - delta;
  }

  // For 0 <= x < 10: e^-x = (e^(-x / 32))^32.
  static double exp_of_minus(double x) {
    const double t = -x / 32;
    double sum = 1;
    for (int k = 14; k > 0; --k) sum = 1 + sum * t / k;
    for (int k = 0; k < 5; ++k) sum *= sum;
    return sum;
  }

  KobStream* stream_;
  int left_ = 0, status_ = KOB_STATUS_OK;
  double buffer_[kAhead];
};

}  // namespace orx::rng
