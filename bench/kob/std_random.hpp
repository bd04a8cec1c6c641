// `times` times n numbers of std::mt19937 to r: its words, and std::uniform_real_distribution on [0, 1) over
// it.
#pragma once

#include <cstdint>

#define STD_RANDOM(flavour)                       \
  namespace flavour {                             \
  void std_random(uint32_t* r, int n, int times); \
  void std_random(float* r, int n, int times);    \
  void std_random(double* r, int n, int times);   \
  }
STD_RANDOM(plain)
STD_RANDOM(avx)
#undef STD_RANDOM
