// gamma x. From 8 on by Stirling's series, below by rows of a table, negative ones by reflection:
// gamma(-x) sin(pi x)/pi = -1/gamma(1 + x).
#pragma once
#include "_heap/real/gamma.hpp"

ORX_ISA_BEGIN(orx::tef)
// The largest argument with a finite result.
constexpr double kLargestForGamma = 0x1.573fae561f647p+7;

// x from 2^-60 on.
inline double gamma_of_positive(double x) {
  if (x >= 8) {
    const ScaledParts y = exponential_in_parts<1>(stirling(x, -0.5));
    return (y.value.high + y.value.low) * y.scale * 2;
  }
  if (x >= 0.9375) {
    const TwoParts y = from_gamma_rows(_tgamma_A_table, x, 0);
    return y.high + y.low;
  }
  return quotient(from_gamma_rows(_tgamma_A_table, x, 1), {x, 0});
}

// -1/(gamma(1 + size) sin(pi f)/pi), f > 0; size from 2^-60 to 186.
inline double reflected_gamma(double size, double f) {
  const TwoParts sine = sine_of_turns(f);
  if (size < 7) {
    const TwoParts gamma = from_gamma_rows(_tgamma_A_table, size, 1);
    return quotient({-1, 0}, product_in_parts(gamma, sine));
  }
  const TwoParts log = stirling(size, 0.5);
  const ScaledParts y = exponential_in_parts<-200>({-log.high, -log.low});
  return quotient(y.value, sine) * y.scale * -0x1p-200;
}

// size >= 2^-60
inline int gamma_of_negative(double size, double* r) {
  const Reflection n(size);
  if (size >= 0x1p52 || n.f == 0) {
    *r = raise_invalid<double>();
    return StatusDomain;
  }
  const bool turned = n.odd != (n.f < 0);
  const double y = size > 186 ? -raise_underflow<double>() : reflected_gamma(size, n.f < 0 ? -n.f : n.f);
  *r = turned ? -y : y;
  if (size < 170 || (y <= -DBL_MIN)) return StatusOk;
  hidden(raise_underflow<double>());
  return StatusUnderflow;
}

inline int special_gamma(double x, double* r) {
  if (x != x || x > 0) {
    *r = x * x;
    return StatusOk;
  }
  *r = raise_invalid<double>();
  return StatusDomain;
}

// The function, double; the status to report.
inline int gamma_of(double x, double* r) {
  const double size = __builtin_fabs(x);
  if (!__builtin_islessequal(size, DBL_MAX)) return special_gamma(x, r);
  if (size < 0x1p-60) {
    if (x == 0) {
      *r = raise_divide_by_zero(hidden(1.0)) * __builtin_copysign(1.0, x);
      return StatusSingularity;
    }
    *r = 1 / hidden(x);
    return size <= 0x1p-1024 ? StatusOverflow : StatusOk;
  }
  if (x < 0) return gamma_of_negative(size, r);
  if (x > kLargestForGamma) {
    *r = raise_overflow<double>();
    return StatusOverflow;
  }
  *r = gamma_of_positive(x);
  return StatusOk;
}

ORX_ISA_END
