// ln |gamma x|. From 8 on by Stirling's series, below by rows of a table, negative ones by reflection:
// ln |gamma(-x)| = -ln gamma(1 + x) - ln |sin(pi x)/pi|.
#pragma once
#include "_heap/real/gamma.hpp"

ORX_ISA_BEGIN(orx::tef)
// The largest argument with a finite result.
constexpr double kLargestForLogGamma = 0x1.754d9278b51a7p+1014;

// x from 2^-60 on, below the arguments that overflow.
inline double own_lgamma_pos(double x) {
  if (x >= 8) {
    const TwoParts y = stirling(x, -0.5);
    return y.high + y.low;
  }
  if (x >= 0.9375) {
    const TwoParts y = from_gamma_rows(kLGammaRows, x, 0);
    return y.high + y.low;
  }
  const TwoParts y = from_gamma_rows(kLGammaRows, x, 1), log = log_in_parts(x);
  const auto sum = two_sum(y.high, -log.high);
  return sum.high + (sum.low + (y.low - log.low));
}

// size from 2^-60 on, f > 0 its distance from an integer.
inline double reflected_log_gamma(double size, double f) {
  const TwoParts gamma = size < 7 ? from_gamma_rows(kLGammaRows, size, 1) : stirling(size, 0.5);
  const TwoParts sine = sine_of_turns(f), log = log_in_parts(sine.high);
  const auto sum = two_sum(gamma.high, log.high);
  return -(sum.high + (sum.low + ((gamma.low + log.low) + sine.low / sine.high)));
}

// The function, double; the status to report.
inline int log_gamma_of(double x, double* r) {
  const double size = __builtin_fabs(x);
  if (!__builtin_islessequal(size, DBL_MAX)) {
    *r = x * x;
    return StatusOk;
  }
  if (size < 0x1p-60) {
    if (x == 0) {
      *r = raise_divide_by_zero(1.0);
      return StatusSingularity;
    }
    const TwoParts log = log_in_parts(size);
    *r = -(log.high + log.low);
    return StatusOk;
  }
  if (x > kLargestForLogGamma) {
    *r = raise_overflow<double>();
    return StatusOverflow;
  }
  if (x > 0) {
    *r = own_lgamma_pos(x);
    return StatusOk;
  }
  const Reflection n(size);
  if (size >= 0x1p52 || n.f == 0) {
    *r = raise_divide_by_zero(1.0);
    return StatusSingularity;
  }
  *r = reflected_log_gamma(size, n.f < 0 ? -n.f : n.f);
  return StatusOk;
}

ORX_ISA_END
