// What the processor is, by CPUID, and its floating-point words.
#include <cpuid.h>
#include <immintrin.h>

#include "orx/base/api.hpp"
#include "orx/primitives.h"

namespace {

struct Registers {
  unsigned a, b, c, d;
};

// All zero where the processor has no such leaf.
Registers cpuid(unsigned leaf, unsigned subleaf = 0) {
  Registers r{};
  if (!__get_cpuid_count(leaf, subleaf, &r.a, &r.b, &r.c, &r.d)) return Registers{};
  return r;
}

// AVX state is of use only if the operating system saves it at a switch of threads.
bool system_saves_avx(unsigned leaf1_c) {
  constexpr unsigned osxsave = 1u << 27, xmm_and_ymm = 6;
  if (!(leaf1_c & osxsave)) return false;
  unsigned low, high;
  __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return (low & xmm_and_ymm) == xmm_and_ymm;
}

}  // namespace

ORX_API unsigned g9_ulosGetCpuFeatures() {
  const Registers leaf = cpuid(1);
  const bool avx = (leaf.c >> 28 & 1) && system_saves_avx(leaf.c);
  return (leaf.d >> 26 & 1 ? ORX_CPU_SSE2 : 0) | (leaf.c & 1 ? ORX_CPU_SSE3 : 0) |
         (leaf.c >> 9 & 1 ? ORX_CPU_SSSE3 : 0) | (leaf.c >> 19 & 1 ? ORX_CPU_SSE41 : 0) |
         (leaf.c >> 20 & 1 ? ORX_CPU_SSE42 : 0) | (leaf.c >> 23 & 1 ? ORX_CPU_POPCNT : 0) |
         (avx ? ORX_CPU_AVX : 0) | (leaf.c >> 30 & 1 ? ORX_CPU_RDRAND : 0);
}

// Both vendors describe caches one per subleaf in the same form, under leaf 4 or 0x8000001D.
ORX_API size_t g9_ulosGetCacheSize(int level) {
  const unsigned leaves[] = {4, 0x8000001D};
  for (const unsigned leaf : leaves) {
    for (unsigned index = 0; index < 16; ++index) {
      const Registers r = cpuid(leaf, index);
      const unsigned kind = r.a & 31;  // 0 none, 1 data, 2 instructions, 3 unified
      if (kind == 0) break;
      if (kind == 2 || int(r.a >> 5 & 7) != level) continue;
      const size_t ways = (r.b >> 22) + 1, partitions = (r.b >> 12 & 0x3FF) + 1, line = (r.b & 0xFFF) + 1;
      return ways * partitions * line * (size_t(r.c) + 1);
    }
  }
  return 0;
}

ORX_API unsigned g9_ulosGetMxcsr() { return _mm_getcsr(); }

ORX_API unsigned g9_ulosSetMxcsr(unsigned word) {
  const unsigned old = _mm_getcsr();
  _mm_setcsr(word);
  return old;
}

ORX_API unsigned g9_ulosGetControlWord() {
  unsigned short word;
  __asm__ volatile("fnstcw %0" : "=m"(word));
  return word;
}

ORX_API unsigned g9_ulosSetControlWord(unsigned word) {
  const unsigned old = g9_ulosGetControlWord();
  const unsigned short wanted = static_cast<unsigned short>(word);
  __asm__ volatile("fldcw %0" : : "m"(wanted));
  return old;
}

ORX_API unsigned g9_ulosGetStatusWord() {
  unsigned short word;
  __asm__ volatile("fnstsw %0" : "=m"(word));
  return word;
}
