// 256-bit vectors with integers of that width and fused products and sums.
#pragma once
#include "orx/base/simd/avx.hpp"

ORX_ISA_BEGIN(orx::simd)
namespace native {

inline __m256 multiply_add(__m256 a, __m256 b, __m256 c) { return _mm256_fmadd_ps(a, b, c); }
inline __m256d multiply_add(__m256d a, __m256d b, __m256d c) { return _mm256_fmadd_pd(a, b, c); }
inline __m256 multiply_subtract(__m256 a, __m256 b, __m256 c) { return _mm256_fmsub_ps(a, b, c); }
inline __m256d multiply_subtract(__m256d a, __m256d b, __m256d c) { return _mm256_fmsub_pd(a, b, c); }
inline __m256 subtract_product(__m256 c, __m256 a, __m256 b) { return _mm256_fnmadd_ps(a, b, c); }
inline __m256d subtract_product(__m256d c, __m256d a, __m256d b) { return _mm256_fnmadd_pd(a, b, c); }

inline __m256 spread_signs(__m256 a) {
  return _mm256_castsi256_ps(_mm256_srai_epi32(_mm256_castps_si256(a), 31));
}
inline __m256d spread_signs(__m256d a) {
  return _mm256_castsi256_pd(_mm256_shuffle_epi32(_mm256_srai_epi32(_mm256_castpd_si256(a), 31), 0xF5));
}
inline __m256i multiply_wide(__m256i a, __m256i b) { return _mm256_mul_epu32(a, b); }

}  // namespace native
ORX_ISA_END
