// Vectors of 128 bits, by SSE3 and what came before it.
#pragma once
#include "orx/base/simd/native.hpp"

ORX_ISA_BEGIN(orx::simd)
namespace native {

template <>
struct VectorType<float, 16> {
  using Type = __m128;
};

ORX_NATIVE_BITS(__m128, _mm, ps)
ORX_NATIVE_BITS(__m128d, _mm, pd)
template <class V>
inline V select_by_sign(V sign, V a, V b) {
  return select(spread_signs(sign), a, b);
}
inline __m128 min(__m128 a, __m128 b) { return _mm_min_ps(a, b); }
inline __m128d min(__m128d a, __m128d b) { return _mm_min_pd(a, b); }
inline __m128 max(__m128 a, __m128 b) { return _mm_max_ps(a, b); }
inline __m128d max(__m128d a, __m128d b) { return _mm_max_pd(a, b); }
inline __m128 square_root(__m128 a) { return _mm_sqrt_ps(a); }
inline __m128d square_root(__m128d a) { return _mm_sqrt_pd(a); }
inline unsigned signs(__m128 a) { return static_cast<unsigned>(_mm_movemask_ps(a)); }
inline unsigned signs(__m128d a) { return static_cast<unsigned>(_mm_movemask_pd(a)); }

inline __m128 approximate_reciprocal(__m128 a) { return _mm_rcp_ps(a); }
inline __m128 approximate_reciprocal_root(__m128 a) { return _mm_rsqrt_ps(a); }

// Doubles and singles or 32-bit integers, as many of them: in the lower half.
inline __m128d to_double(__m128 a) { return _mm_cvtps_pd(a); }
inline __m128d to_double(__m128i a) { return _mm_cvtepi32_pd(a); }
// The upper half repeats the lower one: a lane left 0 would make a reciprocal infinite.
inline __m128 to_single(__m128d a) {
  const __m128 single = _mm_cvtpd_ps(a);
  return _mm_movelh_ps(single, single);
}
inline __m128d approximate_reciprocal(__m128d a) { return to_double(_mm_rcp_ps(to_single(a))); }
inline __m128d approximate_reciprocal_root(__m128d a) { return to_double(_mm_rsqrt_ps(to_single(a))); }
inline __m128i rounded_reciprocal(__m128d a, float scale) {
  const __m128 reciprocal = _mm_rcp_ps(to_single(a));
  return _mm_cvtps_epi32(scale == 1.0f ? reciprocal : reciprocal * _mm_set1_ps(scale));
}
inline __m128i round_to_int(__m128d a) { return _mm_cvtpd_epi32(a); }
inline __m128i truncate_to_int(__m128d a) { return _mm_cvttpd_epi32(a); }
inline __m128i high_words(__m128d a) { return _mm_shuffle_epi32(_mm_castpd_si128(a), 0xDD); }
inline __m128i low_words(__m128d a) { return _mm_shuffle_epi32(_mm_castpd_si128(a), 0x88); }
inline __m128d from_high_words(__m128i a) {
  return _mm_castsi128_pd(_mm_unpacklo_epi32(_mm_setzero_si128(), a));
}

inline __m128i as_int(__m128 a) { return _mm_castps_si128(a); }
inline __m128 low_half(__m128 a) { return a; }
inline __m128 high_half(__m128 a) { return _mm_movehl_ps(a, a); }
inline __m128 to_float(__m128i a) { return _mm_cvtepi32_ps(a); }
inline __m128i round_to_int(__m128 a) { return _mm_cvtps_epi32(a); }
inline __m128i truncate_to_int(__m128 a) { return _mm_cvttps_epi32(a); }

inline __m128 ordered(__m128 a, __m128 b) { return _mm_cmpord_ps(a, b); }
inline __m128d ordered(__m128d a, __m128d b) { return _mm_cmpord_pd(a, b); }
inline __m128 equal(__m128 a, __m128 b) { return _mm_cmpeq_ps(a, b); }
inline __m128d equal(__m128d a, __m128d b) { return _mm_cmpeq_pd(a, b); }
inline __m128 less(__m128 a, __m128 b) { return _mm_cmplt_ps(a, b); }
inline __m128d less(__m128d a, __m128d b) { return _mm_cmplt_pd(a, b); }
inline __m128 at_most(__m128 a, __m128 b) { return _mm_cmple_ps(a, b); }
inline __m128d at_most(__m128d a, __m128d b) { return _mm_cmple_pd(a, b); }

// The instructions for less and at most raise invalid for quiet NaN: lanes with NaN become pairs of zeros.
template <int predicate, class V>
inline V compare(V a, V b) {
  if constexpr (predicate == _CMP_EQ_OQ) {
    return equal(a, b);
  } else if constexpr (predicate == _CMP_NEQ_UQ) {
    return complement(equal(a, b));
  } else if constexpr (predicate == _CMP_UNORD_Q) {
    return complement(ordered(a, b));
  } else if constexpr (predicate == _CMP_NLT_UQ) {
    return complement(compare<_CMP_LT_OQ>(a, b));
  } else if constexpr (predicate == _CMP_NLE_UQ) {
    return complement(compare<_CMP_LE_OQ>(a, b));
  } else if constexpr (predicate == _CMP_NGE_UQ) {
    return complement(compare<_CMP_LE_OQ>(b, a));
  } else {
    static_assert(predicate == _CMP_LT_OQ || predicate == _CMP_LE_OQ);
    const V number = ordered(a, b);
    const V x = bit_and(a, number), y = bit_and(b, number);
    if constexpr (predicate == _CMP_LT_OQ) return bit_and(number, less(x, y));
    if constexpr (predicate == _CMP_LE_OQ) return bit_and(number, at_most(x, y));
  }
}

// Adding `first`, from which on all numbers are integers, makes a number lose its fraction, to the nearest integer
// or as the control word says; the other directions correct that by one.
template <int mode, class V, class T>
inline V round_by_addition(V a, T first) {
  const V sign = bit_and(a, -V{}), size = bit_andnot(sign, a), one = V{} + T(1),
          shift = bit_or(V{} + first, sign);
  V r = (a + shift) - shift;
  constexpr int direction = mode & 7;
  if constexpr (direction == _MM_FROUND_TO_NEG_INF) r = r - bit_and(one, compare<_CMP_LT_OQ>(a, r));
  if constexpr (direction == _MM_FROUND_TO_POS_INF) r = r + bit_and(one, compare<_CMP_LT_OQ>(r, a));
  if constexpr (direction == _MM_FROUND_TO_ZERO)
    r = r - bit_and(bit_or(one, sign), compare<_CMP_LT_OQ>(size, bit_andnot(sign, r)));
  return select(compare<_CMP_LT_OQ>(size, V{} + first), bit_or(bit_andnot(-V{}, r), sign), a);
}
template <int mode>
inline __m128 round(__m128 a) {
  return round_by_addition<mode>(a, 0x1p23f);
}
template <int mode>
inline __m128d round(__m128d a) {
  return round_by_addition<mode>(a, 0x1p52);
}

inline __m128d unpack_low(__m128d a, __m128d b) { return _mm_unpacklo_pd(a, b); }
inline __m128d unpack_high(__m128d a, __m128d b) { return _mm_unpackhi_pd(a, b); }

inline __m128 join(__m128 low, __m128 high) { return _mm_movelh_ps(low, high); }
inline __m128 select_of_4(const float* table, __m128 index) {
  alignas(16) int at[4];
  _mm_store_si128(reinterpret_cast<__m128i*>(at), _mm_and_si128(_mm_castps_si128(index), _mm_set1_epi32(3)));
  return _mm_setr_ps(table[at[0]], table[at[1]], table[at[2]], table[at[3]]);
}
template <class T, class V>
inline V load_few(const T* p, int count, V fill) {
  alignas(16) T lane[sizeof(V) / sizeof(T)];
  store<true>(lane, fill);
  for (int i = 0; i < count; ++i) lane[i] = p[i];
  return load<V, true>(lane);
}

inline void unzip(__m128 low, __m128 high, __m128& a, __m128& b) {
  a = _mm_shuffle_ps(low, high, 0x88);
  b = _mm_shuffle_ps(low, high, 0xDD);
}
inline void unzip(__m128d low, __m128d high, __m128d& a, __m128d& b) {
  a = _mm_unpacklo_pd(low, high);
  b = _mm_unpackhi_pd(low, high);
}
template <class V, class T>
inline void load_unzipped(const T* p, V& a, V& b) {
  unzip(load<V>(p), load<V>(p + sizeof(V) / sizeof(T)), a, b);
}
inline void zip(__m128& a, __m128& b) {
  const __m128 low = _mm_unpacklo_ps(a, b);
  b = _mm_unpackhi_ps(a, b);
  a = low;
}
inline void zip(__m128d& a, __m128d& b) {
  const __m128d low = _mm_unpacklo_pd(a, b);
  b = _mm_unpackhi_pd(a, b);
  a = low;
}
template <class V, class T>
inline void store_zipped(T* p, V a, V b) {
  zip(a, b);
  store(p, a);
  store(p + sizeof(V) / sizeof(T), b);
}

}  // namespace native
ORX_ISA_END
