// Block operations at every alignment and around the size at which they change to streaming stores; probes
// and floating-point words.
#include <gtest/gtest.h>

#include <cfenv>
#include <cstdint>
#include <vector>

#include "orx/primitives.h"

namespace {

const size_t streaming = size_t(4) << 20;

TEST(Block, CopyAndZeroTouchJustTheirBytes) {
  std::vector<unsigned char> from(streaming + 200), to;
  for (size_t i = 0; i < from.size(); ++i) from[i] = static_cast<unsigned char>(i * 7 + i / 251 + 1);
  for (const size_t size :
       {size_t(0), size_t(1), size_t(100), streaming - 1, streaming + 5, streaming + 64}) {
    for (const size_t at : {0, 1, 31, 33}) {
      to.assign(from.size(), 0xEE);
      g9_ulosCopy_8u(from.data() + 3, to.data() + at, size);
      size_t wrong = 0;
      for (size_t i = 0; i < to.size(); ++i)
        wrong += to[i] != (i >= at && i < at + size ? from[i - at + 3] : 0xEE);
      g9_ulosZero_8u(to.data() + at, size);
      for (size_t i = 0; i < to.size(); ++i) wrong += to[i] != (i >= at && i < at + size ? 0 : 0xEE);
      EXPECT_EQ(wrong, 0u) << size << " bytes at " << at;
    }
  }
}

template <class T>
void check_fill(void (*set)(T, T*, size_t)) {
  for (const size_t n : {size_t(0), size_t(3), streaming / sizeof(T) - 1, streaming / sizeof(T) + 11}) {
    for (const size_t at : {0, 1, 7}) {
      std::vector<T> to(n + 20, T(-1));
      set(T(2.5), to.data() + at, n);
      size_t wrong = 0;
      for (size_t i = 0; i < to.size(); ++i) wrong += to[i] != (i >= at && i < at + n ? T(2.5) : T(-1));
      EXPECT_EQ(wrong, 0u) << n << " elements at " << at;
    }
  }
}

TEST(Block, Fill) {
  check_fill(g9_ulosSet_32f);
  check_fill(g9_ulosSet_64f);
}

TEST(Processor, Probes) {
  EXPECT_EQ(bool(g9_ulosGetCpuFeatures() & ORX_CPU_AVX), bool(__builtin_cpu_supports("avx")));
  EXPECT_EQ(bool(g9_ulosGetCpuFeatures() & ORX_CPU_SSE42), bool(__builtin_cpu_supports("sse4.2")));
  EXPECT_EQ(bool(g9_ulosGetCpuFeatures() & ORX_CPU_POPCNT), bool(__builtin_cpu_supports("popcnt")));
  EXPECT_GE(g9_ulosGetCacheSize(1), 8192u);
  EXPECT_LE(g9_ulosGetCacheSize(1), g9_ulosGetCacheSize(2));
  EXPECT_EQ(g9_ulosGetCacheSize(0), 0u);
  EXPECT_EQ(g9_ulosGetCacheSize(9), 0u);
}

TEST(Processor, FloatingPointWords) {
  const unsigned toward_zero = 0x6000, mxcsr = g9_ulosGetMxcsr();
  EXPECT_EQ(g9_ulosSetMxcsr(mxcsr | toward_zero), mxcsr);
  EXPECT_EQ(g9_ulosGetMxcsr(), mxcsr | toward_zero);
  g9_ulosSetMxcsr(mxcsr);
  const unsigned control = g9_ulosGetControlWord();
  EXPECT_EQ(g9_ulosSetControlWord(control | 0xC00), control);
  EXPECT_EQ(g9_ulosGetControlWord(), control | 0xC00);
  g9_ulosSetControlWord(control);
  volatile long double one = 1, zero = 0, quotient = one / zero;  // the x87 unit divides long doubles
  (void)quotient;
  EXPECT_NE(g9_ulosGetStatusWord() & 4, 0u);  // its zero-divide flag
  std::feclearexcept(FE_ALL_EXCEPT);
}

}  // namespace
