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

}  // namespace orx::brng
