// The per-thread state of vector mathematics.
#pragma once
#include <cstdint>

#include "orx/base/api.hpp"
#include "orx/tef.h"

extern "C" {
// Base of the caller's whole first input vector, or null.
extern __thread const void* tefInterfInputVecorPointer;
// Status of the last error reported on this thread.
extern __thread int32_t tefErrStatus;
extern __thread TefErrorCallBack tefErrorCallBack;
// The mode word in the low half; 0 while the environment has not been read.
extern __thread uint64_t tefMode;
}

namespace orx::tef {

// Takes the mode word from the environment, or the default.
int read_initial_mode();

// The thread's mode word: a load and a test, but for the first time on a thread.
inline int mode() {
  const uint64_t word = tefMode;
  return __builtin_expect(word != 0, 1) ? static_cast<int>(word) : read_initial_mode();
}

}  // namespace orx::tef
