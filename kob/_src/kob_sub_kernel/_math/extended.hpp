// Elementary functions in the extended precision of the x87 unit, for constants of which few are made: what a formula
// cancels is made up for by the eleven bits that a double does not have.
#pragma once

#include <limits>

namespace orx::extended {

using Real = long double;

constexpr Real kInfinity = std::numeric_limits<Real>::infinity();
constexpr Real kEpsilon = std::numeric_limits<Real>::epsilon();
constexpr Real kLn2 = 0.693147180559945309417232121458L;

// y log2 x.
inline Real times_log2(Real y, Real x) {
  Real result;
  __asm__("fyl2x" : "=t"(result) : "0"(x), "u"(y) : "st(1)");
  return result;
}

inline Real ln(Real x) { return times_log2(kLn2, x); }

// ln(1 + x) for |x| < 0.29.
inline Real ln_of_one_plus(Real x) {
  Real result;
  __asm__("fyl2xp1" : "=t"(result) : "0"(x), "u"(kLn2) : "st(1)");
  return result;
}

inline Real nearest_integer(Real x) {
  Real result;
  __asm__("frndint" : "=t"(result) : "0"(x));
  return result;
}

inline Real exp(Real x) {
  constexpr Real log2_e = 1.442695040888963407359924681001892137L, limit = 12000;
  if (x > limit) return kInfinity;
  if (x < -limit) return 0;
  const Real t = x * log2_e, whole = nearest_integer(t);
  Real fraction, result;
  __asm__("f2xm1" : "=t"(fraction) : "0"(t - whole));
  __asm__("fscale" : "=t"(result) : "0"(fraction + 1), "u"(whole));
  return result;
}

inline Real sine(Real x) {
  Real result;
  __asm__("fsin" : "=t"(result) : "0"(x));
  return result;
}

inline Real root(Real x) { return __builtin_sqrtl(x); }
inline Real magnitude(Real x) { return __builtin_fabsl(x); }

// c[0] + c[1] x + ... by Horner's scheme.
template <int terms>
inline Real polynomial(Real x, const Real (&c)[terms]) {
  Real sum = c[terms - 1];
  for (int i = terms - 2; i >= 0; --i) sum = sum * x + c[i];
  return sum;
}

}  // namespace orx::extended
