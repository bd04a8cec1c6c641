// The floating-point control state of a kernel: round to nearest, denormals as asked for.
#pragma once
#include <cstdint>

#include "frame/simd.hpp"
#include "mode/mode.hpp"

ORX_ISA_BEGIN(orx::tef)

constexpr uint32_t kMxcsrFlushBits = 0x8040;    // flush-to-zero, denormals-are-zero
constexpr uint32_t kMxcsrCheckedBits = 0xE040;  // and the two rounding bits

// Sets MXCSR for the life of the object. The saved image goes back whole: exception flags that were raised in
// between are lost where the state had to be changed, and stay where it had not. The arithmetic must stand in
// a function that is not inlined between the two writes of MXCSR, or the compiler might move it across them.
class ControlState {
 public:
  explicit ControlState(uint32_t wanted)
      : saved_(_mm_getcsr()), changed_((saved_ & kMxcsrCheckedBits) != wanted) {
    if (changed_) _mm_setcsr((saved_ & ~kMxcsrCheckedBits) | wanted);
  }
  ~ControlState() {
    if (changed_) _mm_setcsr(saved_);
  }
  ControlState(const ControlState&) = delete;
  ControlState& operator=(const ControlState&) = delete;

  // The flush bits that the thread's mode word asks for; "off" and "not set" are the same.
  static uint32_t from_mode() { return (mode() & TEF_FLUSH_MASK) == TEF_FLUSH_ON ? kMxcsrFlushBits : 0; }

 private:
  uint32_t saved_;
  bool changed_;
};

inline void zero_upper() {
#if defined(__AVX__)
  _mm256_zeroupper();
#endif
}

ORX_ISA_END
