// 256-bit vectors of reals. AVX has no integer arithmetic of that width: integers go in 128-bit halves.
#pragma once
#include "orx/base/simd/native.hpp"

ORX_ISA_BEGIN(orx::simd)
namespace native {

template <>
struct VectorType<float, 32> {
  using Type = __m256;
};
template <>
struct VectorType<double, 32> {
  using Type = __m256d;
};
template <>
struct IntegerType<32> {
  using Type = __m256i;
};

ORX_NATIVE_BITS(__m256, _mm256, ps)
ORX_NATIVE_BITS(__m256d, _mm256, pd)
// Not by the compiler's functions for a blend: without 256-bit integers it takes them apart lane by lane.
inline __m256 select_by_sign(__m256 sign, __m256 a, __m256 b) {
  __m256 r;
  asm("vblendvps %3, %2, %1, %0" : "=x"(r) : "x"(b), "xm"(a), "x"(sign));
  return r;
}
inline __m256d select_by_sign(__m256d sign, __m256d a, __m256d b) {
  __m256d r;
  asm("vblendvpd %3, %2, %1, %0" : "=x"(r) : "x"(b), "xm"(a), "x"(sign));
  return r;
}
inline __m256 min(__m256 a, __m256 b) { return _mm256_min_ps(a, b); }
inline __m256d min(__m256d a, __m256d b) { return _mm256_min_pd(a, b); }
inline __m256 max(__m256 a, __m256 b) { return _mm256_max_ps(a, b); }
inline __m256d max(__m256d a, __m256d b) { return _mm256_max_pd(a, b); }
inline __m256 square_root(__m256 a) { return _mm256_sqrt_ps(a); }
inline __m256d square_root(__m256d a) { return _mm256_sqrt_pd(a); }
inline unsigned signs(__m256 a) { return static_cast<unsigned>(_mm256_movemask_ps(a)); }
inline unsigned signs(__m256d a) { return static_cast<unsigned>(_mm256_movemask_pd(a)); }
inline __m256 approximate_reciprocal(__m256 a) { return _mm256_rcp_ps(a); }
inline __m256 approximate_reciprocal_root(__m256 a) { return _mm256_rsqrt_ps(a); }
inline __m256d approximate_reciprocal(__m256d a) { return _mm256_cvtps_pd(_mm_rcp_ps(_mm256_cvtpd_ps(a))); }
inline __m256d approximate_reciprocal_root(__m256d a) {
  return _mm256_cvtps_pd(_mm_rsqrt_ps(_mm256_cvtpd_ps(a)));
}
inline __m128i rounded_reciprocal(__m256d a, float scale) {
  const __m128 reciprocal = _mm_rcp_ps(_mm256_cvtpd_ps(a));
  return _mm_cvtps_epi32(scale == 1.0f ? reciprocal : reciprocal * _mm_set1_ps(scale));
}
template <int mode>
inline __m256 round(__m256 a) {
  return _mm256_round_ps(a, mode);
}
template <int mode>
inline __m256d round(__m256d a) {
  return _mm256_round_pd(a, mode);
}
template <int predicate>
inline __m256 compare(__m256 a, __m256 b) {
  return _mm256_cmp_ps(a, b, predicate);
}
template <int predicate>
inline __m256d compare(__m256d a, __m256d b) {
  return _mm256_cmp_pd(a, b, predicate);
}

inline bool any(__m256i a) { return !_mm256_testz_si256(a, a); }
inline __m256d to_double(__m128 a) { return _mm256_cvtps_pd(a); }
inline __m256d to_double(__m128i a) { return _mm256_cvtepi32_pd(a); }
inline __m128 to_single(__m256d a) { return _mm256_cvtpd_ps(a); }
inline __m128i round_to_int(__m256d a) { return _mm256_cvtpd_epi32(a); }
inline __m128i truncate_to_int(__m256d a) { return _mm256_cvttpd_epi32(a); }
inline __m256 to_float(__m256i a) { return _mm256_cvtepi32_ps(a); }
inline __m256i round_to_int(__m256 a) { return _mm256_cvtps_epi32(a); }
inline __m256i truncate_to_int(__m256 a) { return _mm256_cvttps_epi32(a); }
template <int odd>
inline __m128i words_of(__m256d a) {
  const __m128 low = _mm_castpd_ps(_mm256_castpd256_pd128(a)),
               high = _mm_castpd_ps(_mm256_extractf128_pd(a, 1));
  return _mm_castps_si128(_mm_shuffle_ps(low, high, odd ? 0xDD : 0x88));
}
inline __m128i high_words(__m256d a) { return words_of<1>(a); }
inline __m128i low_words(__m256d a) { return words_of<0>(a); }
inline __m256d from_high_words(__m128i a) {
  const __m128i zero = _mm_setzero_si128();
  return _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_castsi128_pd(_mm_unpacklo_epi32(zero, a))),
                              _mm_castsi128_pd(_mm_unpackhi_epi32(zero, a)), 1);
}

inline __m256i as_int(__m256 a) { return _mm256_castps_si256(a); }
inline __m128 low_half(__m256 a) { return _mm256_castps256_ps128(a); }
inline __m128d low_half(__m256d a) { return _mm256_castpd256_pd128(a); }
inline __m128 high_half(__m256 a) { return _mm256_extractf128_ps(a, 1); }
inline __m128d high_half(__m256d a) { return _mm256_extractf128_pd(a, 1); }
inline __m256 join(__m128 low, __m128 high) {
  return _mm256_insertf128_ps(_mm256_castps128_ps256(low), high, 1);
}
inline __m256d join(__m128d low, __m128d high) {
  return _mm256_insertf128_pd(_mm256_castpd128_pd256(low), high, 1);
}
inline __m256d unpack_low(__m256d a, __m256d b) { return _mm256_unpacklo_pd(a, b); }
inline __m256d unpack_high(__m256d a, __m256d b) { return _mm256_unpackhi_pd(a, b); }
inline __m256 select_of_4(const float* table, __m256 index) {
  return _mm256_permutevar_ps(_mm256_broadcast_ps(reinterpret_cast<const __m128*>(table)),
                              _mm256_castps_si256(index));
}

// A blend by the sign, where there are no integers of the whole width.
#if defined(ORX_ISA_AVX)
inline __m256 spread_signs(__m256 a) {
  const __m256 zero = _mm256_setzero_ps();
  return select_by_sign(a, _mm256_cmp_ps(zero, zero, _CMP_TRUE_UQ), zero);
}
inline __m256d spread_signs(__m256d a) {
  const __m256d zero = _mm256_setzero_pd();
  return select_by_sign(a, _mm256_cmp_pd(zero, zero, _CMP_TRUE_UQ), zero);
}
#endif

// Not by blends, which the compiler would take apart lane by lane.
inline __m256 load_few(const float* p, int count, __m256 fill) {
  const __m256 mask = load<__m256, true>(kMaskRows<float>.lane[count]);
  return _mm256_or_ps(_mm256_maskload_ps(p, _mm256_castps_si256(mask)), _mm256_andnot_ps(mask, fill));
}
inline __m256d load_few(const double* p, int count, __m256d fill) {
  const __m256d mask = load<__m256d, true>(kMaskRows<double>.lane[count]);
  return _mm256_or_pd(_mm256_maskload_pd(p, _mm256_castpd_si256(mask)), _mm256_andnot_pd(mask, fill));
}
template <class T, class V>
inline void store_few(T* p, int count, V x) {
  constexpr int half = sizeof(V) / 2 / sizeof(T);
  auto rest = low_half(x);
  if (count & half) {
    store(p, rest);
    rest = high_half(x);
    p += half;
  }
  store_few(p, count, rest);
}

// Two vectors of pairs a0 b0 a1 b1 ... become one of the a and one of the b, and back. The shuffles work within
// halves, so the halves are brought into order first.
inline void unzip_halves(__m256 even, __m256 odd, __m256& a, __m256& b) {
  a = _mm256_shuffle_ps(even, odd, 0x88);
  b = _mm256_shuffle_ps(even, odd, 0xDD);
}
inline void unzip_halves(__m256d even, __m256d odd, __m256d& a, __m256d& b) {
  a = _mm256_unpacklo_pd(even, odd);
  b = _mm256_unpackhi_pd(even, odd);
}
template <class V>
inline void unzip(V low, V high, V& a, V& b) {
  unzip_halves(join(low_half(low), low_half(high)), join(high_half(low), high_half(high)), a, b);
}
template <class V, class T>
inline void load_unzipped(const T* p, V& a, V& b) {
  constexpr int half = sizeof(V) / 2 / sizeof(T);
  using H = decltype(low_half(V{}));
  unzip_halves(join(load<H>(p), load<H>(p + 2 * half)), join(load<H>(p + half), load<H>(p + 3 * half)), a, b);
}
inline void zip_halves(__m256& a, __m256& b) {
  const __m256 even = _mm256_unpacklo_ps(a, b);
  b = _mm256_unpackhi_ps(a, b);
  a = even;
}
inline void zip_halves(__m256d& a, __m256d& b) {
  const __m256d even = _mm256_unpacklo_pd(a, b);
  b = _mm256_unpackhi_pd(a, b);
  a = even;
}
template <class V>
inline void zip(V& a, V& b) {
  zip_halves(a, b);
  const V low = join(low_half(a), low_half(b));
  b = join(high_half(a), high_half(b));
  a = low;
}
template <class V, class T>
inline void store_zipped(T* p, V a, V b) {
  constexpr int half = sizeof(V) / 2 / sizeof(T);
  zip_halves(a, b);
  store(p, low_half(a));
  store(p + half, low_half(b));
  store(p + 2 * half, high_half(a));
  store(p + 3 * half, high_half(b));
}
}  // namespace native
ORX_ISA_END
