// Whether reals on an interval can be made in the arithmetic that the calling thread has set.
#pragma once

#include "orx/base/default_arithmetic.hpp"

namespace orx::brng {

// Told by two sums, each half-way between two doubles: to read the control word takes longer than to make a
// number.
inline bool rounds_to_nearest() {
  double one = 1, half_step = 0x1p-54;
  __asm__ volatile("" : "+x"(one), "+x"(half_step));
  return one + half_step == one - half_step;
}

// Denormals, which the caller may have flushed, come in when an end is one, or nearly so.
template <class Real>
bool is_far_from_denormals(Real a, Real b) {
  return __builtin_fabs(a) + __builtin_fabs(b) >= 0x1p-60;
}

// body(), whose only arithmetic makes reals on [a, b), under rounding to nearest and with denormals.
template <class Real, class Body>
int make_reals(Real a, Real b, const Body& body) {
  if (rounds_to_nearest() && is_far_from_denormals(a, b)) return body();
  return in_default_arithmetic(body);
}

}  // namespace orx::brng
