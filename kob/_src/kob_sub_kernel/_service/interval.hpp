// The interval that reals are asked for, and whether they can be made in the arithmetic that the calling thread has
// set.
#pragma once

#include <cstdint>

#include "orx/base/bits.hpp"
#include "orx/base/default_arithmetic.hpp"
#include "orx/base/simd/words.hpp"

namespace orx::brng {

// Told by two sums, each half-way between two doubles: to read the control word takes longer than to make a
// number.
inline bool rounds_to_nearest() {
  double one = 1, half_step = 0x1p-54;
  __asm__ volatile("" : "+x"(one), "+x"(half_step));
  return one + half_step == one - half_step;
}

// The value of a function's argument. 32-bit callers have mostly put a double on the stack as two halves just
// before; to read both at once waits until the stores have left the processor, as long as a number takes to make.
inline double argument_value(const double& argument) {
#if defined(__i386__)
  const volatile uint32_t* const halves = reinterpret_cast<const volatile uint32_t*>(&argument);
  const simd::Words4 both = {halves[0], halves[1]};
  return simd::VectorOf<double, 16>(both)[0];
#else
  return argument;
#endif
}
inline float argument_value(const float& argument) { return argument; }

// Denormals, which the caller may have flushed, come in when an end is one, or nearly so.
template <class Real>
bool is_far_from_denormals(Real a, Real b) {
  return __builtin_fabs(a) + __builtin_fabs(b) >= 0x1p-60;
}

}  // namespace orx::brng
