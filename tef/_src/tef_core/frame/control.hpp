// The floating-point control state that a kernel works in.
#pragma once
#include <cstdint>

#include "frame/simd.hpp"
#include "mode/mode.hpp"

ORX_ISA_BEGIN(orx::tef)

enum class Control {
  kMode,       // MXCSR: round to nearest, denormals flushed as the thread's mode word asks
  kNearest,    // MXCSR: round to nearest, denormals kept; the mode word is not asked
  kUntouched,  // the caller's
  kExtended,   // the x87 control word: round to nearest, 64-bit significand; MXCSR is the caller's
};

constexpr uint32_t kMxcsrFlushBits = 0x8040;    // flush-to-zero, denormals-are-zero
constexpr uint32_t kMxcsrCheckedBits = 0xE040;  // and the two rounding bits

constexpr uint16_t kX87CheckedBits = 0xF00;  // precision and rounding control
constexpr uint16_t kX87Extended = 0x300, kX87Double = 0x200;

// Sets the x87 control word for the life of the object.
template <uint16_t wanted>
class X87Control {
 public:
  X87Control() {
    asm volatile("fnstcw %0" : "=m"(saved_));
    if (changed()) set(static_cast<uint16_t>((saved_ & ~kX87CheckedBits) | wanted));
  }
  ~X87Control() {
    if (changed()) set(saved_);
  }
  X87Control(const X87Control&) = delete;
  X87Control& operator=(const X87Control&) = delete;

 private:
  bool changed() const { return (saved_ & kX87CheckedBits) != wanted; }
  static void set(uint16_t word) { asm volatile("fldcw %0" : : "m"(word)); }
  uint16_t saved_;
};

inline void zero_upper() {
#if defined(__AVX__)
  _mm256_zeroupper();
#endif
}

// For code without VEX prefixes before a long vector. In 32-bit mode vzeroupper reaches eight of the sixteen registers, and
// processors go on taking upper halves to be in use: each such instruction then merges with what its destination held, and
// waits for it. To load the state anew ends that, some 200 cycles, also where the upper halves are untouched.
inline void forget_upper() {
#if defined(__i386__) && !defined(__AVX__)
  struct alignas(16) {
    unsigned char image[512];
  } state;
  asm volatile("fxsave %0\n\tfxrstor %0" : "=m"(state));
#endif
}

// The bits under kMxcsrCheckedBits. Of the mode's flush field "off" and "not set" are the same.
template <Control control>
inline uint32_t wanted_mxcsr() {
  if constexpr (control == Control::kNearest) return 0;
  return (mode() & TEF_FLUSH_MASK) == TEF_FLUSH_ON ? kMxcsrFlushBits : 0;
}

// The saved image goes back whole: exception flags that were raised in between are lost where MXCSR had to be
// changed, and stay where it had not.
template <auto body, class... P>
__attribute__((noinline)) void run_under_mxcsr(uint32_t saved, uint32_t wanted, P... p) {
  _mm_setcsr((saved & ~kMxcsrCheckedBits) | wanted);
  body(p...);
  _mm_setcsr(saved);
}

// body(p...) under the control state. The arithmetic must stand in functions that are not inlined, or the
// compiler might move it across the change. As a rule nothing needs changing, and the caller's frame becomes the
// body's.
template <Control control, auto body, class... P>
[[gnu::always_inline]] inline void run_under(P... p) {
  if constexpr (control == Control::kUntouched) {
    body(p...);
  } else if constexpr (control == Control::kExtended) {
    const X87Control<kX87Extended> guard;
    body(p...);
  } else {
    const uint32_t wanted = wanted_mxcsr<control>(), found = _mm_getcsr();
    if (__builtin_expect((found & kMxcsrCheckedBits) == wanted, 1))
      body(p...);
    else
      run_under_mxcsr<body>(found, wanted, p...);
  }
}

ORX_ISA_END
