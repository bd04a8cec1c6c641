// The instruction set of the file being compiled, chosen by the compiler's target flags. All that is inline and
// depends on it lives in a namespace of the instruction set's name, so that the linker cannot take one set's
// copy for the other's.
#pragma once
#include <immintrin.h>

#if defined(__AVX512F__) && defined(__AVX512DQ__) && defined(__AVX512VL__) && defined(__AVX512BW__)
#define ORX_ISA avx512
#define ORX_ISA_AVX512
#elif defined(__AVX2__) && defined(__FMA__)
#define ORX_ISA avx2
#define ORX_ISA_AVX2
#elif defined(__AVX__)
#define ORX_ISA avx
#define ORX_ISA_AVX
#else
#define ORX_ISA sse3
#endif
#define ORX_ISA_BEGIN(space) \
  namespace space {          \
  inline namespace ORX_ISA {
#define ORX_ISA_END \
  }                 \
  }

ORX_ISA_BEGIN(orx::simd)
// The bytes of a vector; of a vector of integers; and whether a product and a sum can round once.
#if defined(ORX_ISA_AVX512)
constexpr int kVectorBytes = 64, kIntegerBytes = 64;
constexpr bool kFused = true;
#elif defined(ORX_ISA_AVX2)
constexpr int kVectorBytes = 32, kIntegerBytes = 32;
constexpr bool kFused = true;
#elif defined(ORX_ISA_AVX)
constexpr int kVectorBytes = 32, kIntegerBytes = 16;
constexpr bool kFused = false;
#else
constexpr int kVectorBytes = 16, kIntegerBytes = 16;
constexpr bool kFused = false;
#endif
ORX_ISA_END
