// The instruction set of the file being compiled. All that is inline and depends on it lives in a namespace
// of the instruction set's name, so that the linker cannot take one set's copy for the other's.
#pragma once
#include <immintrin.h>

#if defined(__AVX__)
#define ORX_ISA avx
#else
#define ORX_ISA sse3
#endif
#define ORX_ISA_BEGIN(space) \
  namespace space {          \
  inline namespace ORX_ISA {
#define ORX_ISA_END \
  }                 \
  }
