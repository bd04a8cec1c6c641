// Four doubles at a time: loads from double or single precision, whole or in part, and blocks turned from
// variables in rows to observations in rows.
#pragma once

#include <immintrin.h>

#include <cstdint>

namespace orx::ss {

inline __m256d load4(const double* x) { return _mm256_loadu_pd(x); }
inline __m256d load4(const float* x) { return _mm256_cvtps_pd(_mm_loadu_ps(x)); }

// All bits set in the first `count` of four lanes, count 0 to 4.
inline __m256i first_lanes(int count) {
  alignas(32) static const int64_t bits[8] = {-1, -1, -1, -1, 0, 0, 0, 0};
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bits + 4 - count));
}

// The lanes of `mask` from memory, 0 in the others, of which nothing is read.
inline __m256d load4(const double* x, __m256i mask) { return _mm256_maskload_pd(x, mask); }
inline __m256d load4(const float* x, __m256i mask) {
  const __m256 words = _mm256_castsi256_ps(mask);
  const __m128 narrow = _mm_shuffle_ps(_mm256_castps256_ps128(words), _mm256_extractf128_ps(words, 1), 0x88);
  return _mm256_cvtps_pd(_mm_maskload_ps(x, _mm_castps_si128(narrow)));
}

// Two numbers from x in the lower lanes, two from y in the upper ones.
inline __m256d load2x2(const double* x, const double* y) {
  return _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(x)), _mm_loadu_pd(y), 1);
}
inline __m256d load2x2(const float* x, const float* y) {
  const __m128 low = _mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(x));
  return _mm256_cvtps_pd(_mm_loadh_pi(low, reinterpret_cast<const __m64*>(y)));
}

// The lower two lanes in both halves.
inline __m256d lower_twice(__m256d x) { return _mm256_permute2f128_pd(x, x, 0); }

// The upper two lanes added to the lower ones, 0 in their place.
inline __m256d fold(__m256d x) {
  const __m256d upper = _mm256_permute2f128_pd(x, x, 0x81), lower = _mm256_permute2f128_pd(x, x, 0x80);
  return upper + lower;
}

inline void store4(double* x, __m256d value) { _mm256_storeu_pd(x, value); }
inline void store4(float* x, __m256d value) { _mm_storeu_ps(x, _mm256_cvtpd_ps(value)); }

inline __m256d keep(__m256d x, __m256i mask) { return _mm256_and_pd(x, _mm256_castsi256_pd(mask)); }

inline double sum4(__m256d x) {
  const __m128d pairs = _mm_add_pd(_mm256_castpd256_pd128(x), _mm256_extractf128_pd(x, 1));
  return _mm_cvtsd_f64(_mm_add_sd(pairs, _mm_unpackhi_pd(pairs, pairs)));
}

inline void transpose4(__m256d r[4]) {
  const __m256d a = _mm256_unpacklo_pd(r[0], r[1]), b = _mm256_unpackhi_pd(r[0], r[1]);
  const __m256d c = _mm256_unpacklo_pd(r[2], r[3]), d = _mm256_unpackhi_pd(r[2], r[3]);
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
    __m256d r[4] = {load4(row[0] + i), load4(row[1] + i), load4(row[2] + i), load4(row[3] + i)};
    transpose4(r);
    for (int k = 0; k < 4; ++k) _mm256_store_pd(panel + 4 * (i + k), r[k]);
  }
  for (; i < count; ++i)
    for (int k = 0; k < 4; ++k) panel[4 * i + k] = row[k][i];
}

template <class T>
void panel_from_columns(const T* x, intptr_t stride, int lanes, int count, double* panel) {
  const __m256i mask = first_lanes(lanes);
  for (int i = 0; i < count; ++i) _mm256_store_pd(panel + 4 * i, load4(x + i * stride, mask));
}

}  // namespace orx::ss
