// Arithmetic that does not hang on the caller's control words: round to nearest, denormals kept, and the x87
// unit at its full precision.
#pragma once

#include <xmmintrin.h>

#include <cstdint>

namespace orx {

// In force for the life of the object. The saved words go back whole.
class DefaultArithmetic {
 public:
  DefaultArithmetic() : mxcsr_(_mm_getcsr()) {
    __asm__ volatile("fnstcw %0" : "=m"(x87_));
    if (changes_mxcsr()) _mm_setcsr(mxcsr_ & ~kMxcsrChecked);
    if (changes_x87()) load_x87(uint16_t((x87_ & ~kX87Checked) | kX87Extended));
  }
  ~DefaultArithmetic() {
    if (changes_mxcsr()) _mm_setcsr(mxcsr_);
    if (changes_x87()) load_x87(x87_);
  }
  DefaultArithmetic(const DefaultArithmetic&) = delete;
  DefaultArithmetic& operator=(const DefaultArithmetic&) = delete;

 private:
  static constexpr uint32_t kMxcsrChecked = 0xE040;  // flush to zero, rounding, denormals are zero
  static constexpr uint16_t kX87Checked = 0x0F00;    // rounding, precision
  static constexpr uint16_t kX87Extended = 0x0300;

  bool changes_mxcsr() const { return mxcsr_ & kMxcsrChecked; }
  bool changes_x87() const { return (x87_ & kX87Checked) != kX87Extended; }
  static void load_x87(uint16_t word) { __asm__ volatile("fldcw %0" : : "m"(word)); }

  uint32_t mxcsr_;
  uint16_t x87_;
};

// Apart from its caller: the compiler must not move arithmetic across a change of the control words.
template <class Body>
[[gnu::noinline]] auto called_apart(const Body& body) {
  return body();
}

template <class Body>
auto in_default_arithmetic(const Body& body) {
  const DefaultArithmetic arithmetic;
  return called_apart(body);
}

}  // namespace orx
