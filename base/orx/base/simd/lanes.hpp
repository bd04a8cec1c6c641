// Four doubles at a time from data in double or single precision: loads in whole or in part, sums and extremes of
// lanes, and blocks turned from variables in rows to observations in rows.
#pragma once
#include "orx/base/simd/memory.hpp"

ORX_ISA_BEGIN(orx::simd)

using Doubles = VectorOf<double, 32>;

inline Doubles spread(double x) { return x - Doubles{}; }
inline Doubles load4(const double* x) { return load<Doubles>(x); }
inline Doubles load4(const float* x) { return _mm256_cvtps_pd(_mm_loadu_ps(x)); }
inline void store4(double* x, Doubles value) { store(x, value); }
inline void store4(float* x, Doubles value) { _mm_storeu_ps(x, _mm256_cvtpd_ps(value)); }

// All bits set in the first `count` of four lanes, count 0 to 4.
inline Doubles first_four(int count) { return load<Doubles, true>(kMaskRows<double>.lane[count]); }

// The lanes of `mask`, 0 in the others.
inline Doubles keep(Doubles x, Doubles mask) { return native::bit_and(x, mask); }
// The same from memory, of which nothing else is read.
inline Doubles load4(const double* x, Doubles mask) {
  return _mm256_maskload_pd(x, _mm256_castpd_si256(mask));
}
inline Doubles load4(const float* x, Doubles mask) {
  const __m256 words = _mm256_castpd_ps(mask);
  const __m128 narrow = _mm_shuffle_ps(native::low_half(words), native::high_half(words), 0x88);
  return _mm256_cvtps_pd(_mm_maskload_ps(x, _mm_castps_si128(narrow)));
}

// Two numbers from x in the lower lanes, two from y in the upper ones.
inline Doubles load2x2(const double* x, const double* y) {
  return native::join(_mm_loadu_pd(x), _mm_loadu_pd(y));
}
inline Doubles load2x2(const float* x, const float* y) {
  const __m128 low = _mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(x));
  return _mm256_cvtps_pd(_mm_loadh_pi(low, reinterpret_cast<const __m64*>(y)));
}
// The lower two lanes and the upper two to two places.
inline void store2x2(double* low, double* high, Doubles x) {
  _mm_storeu_pd(low, native::low_half(x));
  _mm_storeu_pd(high, native::high_half(x));
}

// The lower two lanes in both halves.
inline Doubles lower_twice(Doubles x) { return _mm256_permute2f128_pd(x, x, 0); }
// Each of two numbers twice.
inline Doubles each_twice(double x, double y) { return _mm256_setr_pd(x, x, y, y); }
// The upper two lanes added to the lower ones, 0 in their place.
inline Doubles fold(Doubles x) {
  return _mm256_permute2f128_pd(x, x, 0x81) + _mm256_permute2f128_pd(x, x, 0x80);
}

// The lesser and the greater of each pair of lanes; y where one of them is NaN.
inline Doubles lesser(Doubles x, Doubles y) { return _mm256_min_pd(x, y); }
inline Doubles greater(Doubles x, Doubles y) { return _mm256_max_pd(x, y); }

inline double sum4(Doubles x) {
  const __m128d pairs = native::low_half(x) + native::high_half(x);
  return pairs[0] + pairs[1];
}
inline double least4(Doubles x) {
  const __m128d pairs = _mm_min_pd(native::low_half(x), native::high_half(x));
  return _mm_cvtsd_f64(_mm_min_sd(pairs, _mm_unpackhi_pd(pairs, pairs)));
}

// Keeps a value in a register: compilers would rather load it once for each use, or load the next one early,
// than leave running sums where they are.
inline void pin(Doubles& x) { __asm__("" : "+x"(x)); }

// Asks for the cache line of an address, into all caches or into all but the first.
inline void prefetch(const void* p) { _mm_prefetch(static_cast<const char*>(p), _MM_HINT_T0); }
inline void prefetch_far(const void* p) { _mm_prefetch(static_cast<const char*>(p), _MM_HINT_T1); }

// Writes past the caches, to an address that is a multiple of 32; done when the fence is passed.
inline void store_past_caches(void* to, Doubles x) { _mm256_stream_pd(static_cast<double*>(to), x); }
inline void fence_stores() { _mm_sfence(); }

inline void transpose4(Doubles r[4]) {
  const Doubles a = _mm256_unpacklo_pd(r[0], r[1]), b = _mm256_unpackhi_pd(r[0], r[1]);
  const Doubles c = _mm256_unpacklo_pd(r[2], r[3]), d = _mm256_unpackhi_pd(r[2], r[3]);
  r[0] = _mm256_permute2f128_pd(a, c, 0x20);
  r[1] = _mm256_permute2f128_pd(b, d, 0x20);
  r[2] = _mm256_permute2f128_pd(a, c, 0x31);
  r[3] = _mm256_permute2f128_pd(b, d, 0x31);
}

// A panel: `count` observations of four variables, the four of one observation side by side. Where there are
// only `lanes` variables, rows repeat the last one, columns leave zeros.
template <class T>
void panel_from_rows(const T* x, intptr_t stride, int lanes, int count, double* panel) {
  const T* row[4];
  for (int k = 0; k < 4; ++k) row[k] = x + (k < lanes ? k : lanes - 1) * stride;
  int i = 0;
  for (; i + 4 <= count; i += 4) {
    Doubles r[4] = {load4(row[0] + i), load4(row[1] + i), load4(row[2] + i), load4(row[3] + i)};
    transpose4(r);
    for (int k = 0; k < 4; ++k) store<true>(panel + 4 * (i + k), r[k]);
  }
  for (; i < count; ++i)
    for (int k = 0; k < 4; ++k) panel[4 * i + k] = row[k][i];
}

template <class T>
void panel_from_columns(const T* x, intptr_t stride, int lanes, int count, double* panel) {
  const Doubles mask = first_four(lanes);
  for (int i = 0; i < count; ++i) store<true>(panel + 4 * i, load4(x + i * stride, mask));
}

ORX_ISA_END
