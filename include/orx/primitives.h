/* Low-level primitives: radix sorts, block operations, what the processor is, floating-point control. */
#ifndef ORX_PRIMITIVES_H
#define ORX_PRIMITIVES_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Sorts `data[0..n-1]` ascending, in place; `work` is scratch for n elements and must not overlap `data`.
 *
 * The order is IEEE 754 totalOrder, so every bit pattern has its place and the result does not depend on how
 * the data came in: negative NaN, -infinity, negative numbers, -0, +0, positive numbers, +infinity, positive
 * NaN. (The NaN that an invalid operation makes on x86 has its sign bit set: it goes to the front.)
 * Time is linear in n: a radix sort by digits of 8 or 11 bits, the least significant one first, over the high
 * word and then, where doubles share it, over the low one. Few elements are sorted by insertion. n below 2
 * does nothing. */
void g9_ulosSortRadixAscend_32f_I(float* data, float* work, int n);
void g9_ulosSortRadixAscend_64f_I(double* data, double* work, int n);

/* Copies, clears or fills a block. `size` counts bytes, `n` elements. Source and destination of a copy must
 * not overlap. Blocks too large for the caches are written past them, so that they do not drive other data
 * out. */
void g9_ulosCopy_8u(const void* source, void* destination, size_t size);
void g9_ulosZero_8u(void* destination, size_t size);
void g9_ulosSet_32f(float value, float* destination, size_t n);
void g9_ulosSet_64f(double value, double* destination, size_t n);

/* What the processor offers and the operating system has enabled: bits of ORX_CPU_... */
unsigned g9_ulosGetCpuFeatures(void);
#define ORX_CPU_SSE2 0x1u
#define ORX_CPU_SSE3 0x2u
#define ORX_CPU_SSSE3 0x4u
#define ORX_CPU_SSE41 0x8u
#define ORX_CPU_SSE42 0x10u
#define ORX_CPU_POPCNT 0x20u
#define ORX_CPU_AVX 0x40u
#define ORX_CPU_RDRAND 0x80u

/* Size in bytes of the data (or unified) cache of `level` 1 to 3; 0 when there is none or it is not told. */
size_t g9_ulosGetCacheSize(int level);

/* The calling thread's floating-point words: MXCSR of the vector unit, and control and status word of the x87
 * unit. The setters give back the word that stood before. */
unsigned g9_ulosGetMxcsr(void);
unsigned g9_ulosSetMxcsr(unsigned word);
unsigned g9_ulosGetControlWord(void);
unsigned g9_ulosSetControlWord(unsigned word);
unsigned g9_ulosGetStatusWord(void);

#ifdef __cplusplus
}
#endif

#endif
