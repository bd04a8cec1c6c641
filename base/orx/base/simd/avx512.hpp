// 512-bit vectors with masks of bits.
#pragma once
#include "orx/base/simd/avx2.hpp"

ORX_ISA_BEGIN(orx::simd)
namespace native {

template <>
struct VectorType<float, 64> {
  using Type = __m512;
};
template <>
struct VectorType<double, 64> {
  using Type = __m512d;
};
template <>
struct IntegerType<64> {
  using Type = __m512i;
};
template <class T>
struct MaskType;
template <>
struct MaskType<float> {
  using Type = __mmask16;
};
template <>
struct MaskType<double> {
  using Type = __mmask8;
};

inline __m512 bit_and(__m512 a, __m512 b) { return _mm512_and_ps(a, b); }
inline __m512d bit_and(__m512d a, __m512d b) { return _mm512_and_pd(a, b); }
inline __m512 bit_or(__m512 a, __m512 b) { return _mm512_or_ps(a, b); }
inline __m512d bit_or(__m512d a, __m512d b) { return _mm512_or_pd(a, b); }
inline __m512 bit_xor(__m512 a, __m512 b) { return _mm512_xor_ps(a, b); }
inline __m512d bit_xor(__m512d a, __m512d b) { return _mm512_xor_pd(a, b); }
inline __m512 bit_andnot(__m512 mask, __m512 a) { return _mm512_andnot_ps(mask, a); }
inline __m512d bit_andnot(__m512d mask, __m512d a) { return _mm512_andnot_pd(mask, a); }

inline __m512 min(__m512 a, __m512 b) { return _mm512_min_ps(a, b); }
inline __m512d min(__m512d a, __m512d b) { return _mm512_min_pd(a, b); }
inline __m512 max(__m512 a, __m512 b) { return _mm512_max_ps(a, b); }
inline __m512d max(__m512d a, __m512d b) { return _mm512_max_pd(a, b); }
inline __m512 square_root(__m512 a) { return _mm512_sqrt_ps(a); }
inline __m512d square_root(__m512d a) { return _mm512_sqrt_pd(a); }
inline __m512 multiply_add(__m512 a, __m512 b, __m512 c) { return _mm512_fmadd_ps(a, b, c); }
inline __m512d multiply_add(__m512d a, __m512d b, __m512d c) { return _mm512_fmadd_pd(a, b, c); }
inline __m512 multiply_subtract(__m512 a, __m512 b, __m512 c) { return _mm512_fmsub_ps(a, b, c); }
inline __m512d multiply_subtract(__m512d a, __m512d b, __m512d c) { return _mm512_fmsub_pd(a, b, c); }
inline __m512 subtract_product(__m512 c, __m512 a, __m512 b) { return _mm512_fnmadd_ps(a, b, c); }
inline __m512d subtract_product(__m512d c, __m512d a, __m512d b) { return _mm512_fnmadd_pd(a, b, c); }
template <int mode>
inline __m512 round(__m512 a) {
  return _mm512_roundscale_ps(a, mode);
}
template <int mode>
inline __m512d round(__m512d a) {
  return _mm512_roundscale_pd(a, mode);
}

// Good to 2^-14, without a way through singles.
inline __m512 approximate_reciprocal(__m512 a) { return _mm512_rcp14_ps(a); }
inline __m512d approximate_reciprocal(__m512d a) { return _mm512_rcp14_pd(a); }
inline __m512 approximate_reciprocal_root(__m512 a) { return _mm512_rsqrt14_ps(a); }
inline __m512d approximate_reciprocal_root(__m512d a) { return _mm512_rsqrt14_pd(a); }
inline __m256i rounded_reciprocal(__m512d a, float scale) {
  const __m512d reciprocal = _mm512_rcp14_pd(a);
  return _mm512_cvtpd_epi32(scale == 1.0f ? reciprocal : reciprocal * _mm512_set1_pd(scale));
}

// ---- masks
template <int predicate>
inline __mmask16 compare(__m512 a, __m512 b) {
  return _mm512_cmp_ps_mask(a, b, predicate);
}
template <int predicate>
inline __mmask8 compare(__m512d a, __m512d b) {
  return _mm512_cmp_pd_mask(a, b, predicate);
}
inline __mmask8 bit_and(__mmask8 a, __mmask8 b) { return static_cast<__mmask8>(a & b); }
inline __mmask16 bit_and(__mmask16 a, __mmask16 b) { return static_cast<__mmask16>(a & b); }
inline __mmask8 bit_or(__mmask8 a, __mmask8 b) { return static_cast<__mmask8>(a | b); }
inline __mmask16 bit_or(__mmask16 a, __mmask16 b) { return static_cast<__mmask16>(a | b); }
inline __mmask8 complement(__mmask8 a) { return static_cast<__mmask8>(~a); }
inline __mmask16 complement(__mmask16 a) { return static_cast<__mmask16>(~a); }
inline __m512 select(__mmask16 mask, __m512 a, __m512 b) { return _mm512_mask_blend_ps(mask, b, a); }
inline __m512d select(__mmask8 mask, __m512d a, __m512d b) { return _mm512_mask_blend_pd(mask, b, a); }
inline __m512 keep(__mmask16 mask, __m512 a) { return _mm512_maskz_mov_ps(mask, a); }
inline __m512d keep(__mmask8 mask, __m512d a) { return _mm512_maskz_mov_pd(mask, a); }
inline unsigned signs(__mmask8 mask) { return mask; }
inline unsigned signs(__mmask16 mask) { return mask; }
inline unsigned signs(__m512 a) { return _mm512_movepi32_mask(_mm512_castps_si512(a)); }
inline unsigned signs(__m512d a) { return _mm512_movepi64_mask(_mm512_castpd_si512(a)); }
// A mask as lanes of all ones or zero, of the kind of the second argument.
inline __m512 lanes_of(__mmask16 mask, __m512) { return _mm512_castsi512_ps(_mm512_movm_epi32(mask)); }
inline __m512d lanes_of(__mmask8 mask, __m512d) { return _mm512_castsi512_pd(_mm512_movm_epi64(mask)); }
inline __m512 spread_signs(__m512 a) {
  return _mm512_castsi512_ps(_mm512_srai_epi32(_mm512_castps_si512(a), 31));
}
inline __m512d spread_signs(__m512d a) {
  return _mm512_castsi512_pd(_mm512_srai_epi64(_mm512_castpd_si512(a), 63));
}

template <class V>
inline V select_by_sign(V sign, V a, V b) {
  using M = decltype(compare<_CMP_EQ_OQ>(sign, sign));
  return select(static_cast<M>(signs(sign)), a, b);
}

inline bool any(__m512i a) { return _mm512_test_epi32_mask(a, a) != 0; }

// ---- conversions and halves
inline __m512d to_double(__m256 a) { return _mm512_cvtps_pd(a); }
inline __m512d to_double(__m256i a) { return _mm512_cvtepi32_pd(a); }
inline __m256 to_single(__m512d a) { return _mm512_cvtpd_ps(a); }
inline __m256i round_to_int(__m512d a) { return _mm512_cvtpd_epi32(a); }
inline __m256i truncate_to_int(__m512d a) { return _mm512_cvttpd_epi32(a); }
inline __m512 to_float(__m512i a) { return _mm512_cvtepi32_ps(a); }
inline __m512i round_to_int(__m512 a) { return _mm512_cvtps_epi32(a); }
inline __m512i truncate_to_int(__m512 a) { return _mm512_cvttps_epi32(a); }
inline __m256i low_words(__m512d a) { return _mm512_cvtepi64_epi32(_mm512_castpd_si512(a)); }
inline __m512d from_high_words(__m256i a) {
  return _mm512_castsi512_pd(_mm512_slli_epi64(_mm512_cvtepu32_epi64(a), 32));
}
inline __m256i high_words(__m512d a) {
  return _mm512_cvtepi64_epi32(_mm512_srli_epi64(_mm512_castpd_si512(a), 32));
}
inline __m512i as_int(__m512 a) { return _mm512_castps_si512(a); }
inline __m256 low_half(__m512 a) { return _mm512_castps512_ps256(a); }
inline __m256d low_half(__m512d a) { return _mm512_castpd512_pd256(a); }
inline __m256 high_half(__m512 a) { return _mm512_extractf32x8_ps(a, 1); }
inline __m256d high_half(__m512d a) { return _mm512_extractf64x4_pd(a, 1); }
inline __m512 join(__m256 low, __m256 high) {
  return _mm512_insertf32x8(_mm512_castps256_ps512(low), high, 1);
}
inline __m512d join(__m256d low, __m256d high) {
  return _mm512_insertf64x4(_mm512_castpd256_pd512(low), high, 1);
}
inline __m512d unpack_low(__m512d a, __m512d b) { return _mm512_unpacklo_pd(a, b); }
inline __m512d unpack_high(__m512d a, __m512d b) { return _mm512_unpackhi_pd(a, b); }
inline __m512i multiply_wide(__m512i a, __m512i b) { return _mm512_mul_epu32(a, b); }
inline __m512 select_of_4(const float* table, __m512 index) {
  return _mm512_permutevar_ps(_mm512_broadcast_f32x4(_mm_load_ps(table)), _mm512_castps_si512(index));
}

// ---- memory
inline __m512 load_few(const float* p, int count, __m512 fill) {
  return _mm512_mask_loadu_ps(fill, static_cast<__mmask16>((1u << count) - 1), p);
}
inline __m512d load_few(const double* p, int count, __m512d fill) {
  return _mm512_mask_loadu_pd(fill, static_cast<__mmask8>((1u << count) - 1), p);
}
inline void store_few(float* p, int count, __m512 x) {
  _mm512_mask_storeu_ps(p, static_cast<__mmask16>((1u << count) - 1), x);
}
inline void store_few(double* p, int count, __m512d x) {
  _mm512_mask_storeu_pd(p, static_cast<__mmask8>((1u << count) - 1), x);
}
// Two vectors of pairs a0 b0 a1 b1 ... become one of the a and one of the b, and back.
inline void unzip(__m512 low, __m512 high, __m512& a, __m512& b) {
  const __m512i even = _mm512_setr_epi32(0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
  a = _mm512_permutex2var_ps(low, even, high);
  b = _mm512_permutex2var_ps(low, _mm512_add_epi32(even, _mm512_set1_epi32(1)), high);
}
inline void unzip(__m512d low, __m512d high, __m512d& a, __m512d& b) {
  const __m512i even = _mm512_setr_epi64(0, 2, 4, 6, 8, 10, 12, 14);
  a = _mm512_permutex2var_pd(low, even, high);
  b = _mm512_permutex2var_pd(low, _mm512_add_epi64(even, _mm512_set1_epi64(1)), high);
}
inline void zip(__m512& a, __m512& b) {
  const __m512i low = _mm512_setr_epi32(0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
  const __m512 first = _mm512_permutex2var_ps(a, low, b);
  b = _mm512_permutex2var_ps(a, _mm512_add_epi32(low, _mm512_set1_epi32(8)), b);
  a = first;
}
inline void zip(__m512d& a, __m512d& b) {
  const __m512i low = _mm512_setr_epi64(0, 8, 1, 9, 2, 10, 3, 11);
  const __m512d first = _mm512_permutex2var_pd(a, low, b);
  b = _mm512_permutex2var_pd(a, _mm512_add_epi64(low, _mm512_set1_epi64(4)), b);
  a = first;
}
template <class V, class T>
inline void load_unzipped_whole(const T* p, V& a, V& b) {
  unzip(load<V>(p), load<V>(p + sizeof(V) / sizeof(T)), a, b);
}
inline void load_unzipped(const float* p, __m512& a, __m512& b) { load_unzipped_whole(p, a, b); }
inline void load_unzipped(const double* p, __m512d& a, __m512d& b) { load_unzipped_whole(p, a, b); }
template <class T, class V>
inline void store_zipped_whole(T* p, V a, V b) {
  zip(a, b);
  store(p, a);
  store(p + sizeof(V) / sizeof(T), b);
}
inline void store_zipped(float* p, __m512 a, __m512 b) { store_zipped_whole(p, a, b); }
inline void store_zipped(double* p, __m512d a, __m512d b) { store_zipped_whole(p, a, b); }

}  // namespace native
ORX_ISA_END
