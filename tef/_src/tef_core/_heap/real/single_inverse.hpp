// What the inverse hyperbolic functions of single precision share.
//
// In double: the logarithm of u, to 2^-32, is good enough for arguments down to 2^-20, where u - 1 has 32 bits; below, the
// argument is the result. In single: the logarithm of 1 + z, as log1p has it, from a z that does not cancel.
#pragma once
#include "ln/slog.hpp"
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)

struct SingleInverseData {
  Row<double> one = 1.0, half = 0.5;
  Row<float> single_one = 1.0f;
  Row<float> tiny = 0x1p-20f;
  Row<float> orders = 33 * 0x1p23f;  // of 2 x over x scaled down, as SingleLogParts counts them
};
inline constexpr SingleInverseData kSingleInverse{};

// ln u in double, u a normal number.
template <class W>
inline W wide_log(W u) {
  return LogLA<LnDescription, true>::log(u, exponent_field(u));
}

// ln(1 + z) for z = a + b from 0 to 2^126, a >= b >= 0. What the rounded sums lost is added to the reduced argument.
template <bool ep, class X>
inline X log_of_sum(X a, X b) {
  const auto z = fast_two_sum(a, b);
  const auto& one = kSingleInverse.single_one;
  const X u = z.high + one, t = u - z.high, lost = (one - t) + (z.high - (u - t));
  const SingleLogParts<X> p(u);
  if constexpr (ep) return sln_ep(p, lost * p.scale);
  // ln(1 + e + t) = ln(1 + e) + t/(1 + e), nearly. Added up from the small end: e, and e + k ln 2, may lie above a power of two
  // where the result is below it.
  const X e = p.e(), e2 = e * e, rest = (lost + z.low) * p.scale;
  const X tail = multiply_add(e2, polynomial(e, e2, vsln_data.la), subtract_product(rest, rest, e));
  return multiply_add(p.k, vsln_data.L, e + tail);
}

// ln 2 x for x from 1 up, which is their value where squares overflow.
template <bool ep, class X>
inline X log_of_twice(X x) {
  SingleLogParts<X> p(x * kSingleLog.down);
  p.k = p.k + kSingleInverse.orders;
  return ep ? sln_ep(p, X{}) : sln_la(p, X{});
}

ORX_ISA_END
