// The per-thread state of vector mathematics.
#pragma once
#include <cstdint>

#include "orx/base/api.hpp"
#include "orx/base/vector_math_thread.hpp"

namespace orx::tef {

// Takes the mode word from the environment, or the default.
int read_initial_mode();

// The thread's mode word: a load and a test, but for the first time on a thread.
inline int mode() {
  const int word = static_cast<int>(tefMode);
  return __builtin_expect(word != 0, 1) ? word : read_initial_mode();
}

}  // namespace orx::tef
