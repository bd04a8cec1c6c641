// Tables of short rows - two to four neighbouring reals, such as the coefficients of a polynomial - read into
// columns and written from columns, in vectors of 32 bytes. Neither AVX nor what came after it has an
// instruction for this: rows come by scalar addresses and are interleaved in registers.
#pragma once
#include "orx/base/simd/simd.hpp"

#if defined(__AVX__)
ORX_ISA_BEGIN(orx::simd)
namespace rows {

// One bit for each lane where a <= b.
inline unsigned lanes_at_most(__m256d a, __m256d b) {
  return static_cast<unsigned>(_mm256_movemask_pd(_mm256_cmp_pd(a, b, _CMP_LE_OQ)));
}
inline unsigned lanes_at_most(__m256 a, __m256 b) {
  return static_cast<unsigned>(_mm256_movemask_ps(_mm256_cmp_ps(a, b, _CMP_LE_OQ)));
}
// v in each lane where a <= b, 0 elsewhere.
inline __m256d where_at_most(__m256d a, __m256d b, __m256d v) {
  return _mm256_and_pd(_mm256_cmp_pd(a, b, _CMP_LE_OQ), v);
}
inline __m256 where_at_most(__m256 a, __m256 b, __m256 v) {
  return _mm256_and_ps(_mm256_cmp_ps(a, b, _CMP_LE_OQ), v);
}
// The smaller number, and the greater; where one is none, b.
inline __m256d smaller(__m256d a, __m256d b) { return _mm256_min_pd(a, b); }
inline __m256 smaller(__m256 a, __m256 b) { return _mm256_min_ps(a, b); }
inline __m256d greater(__m256d a, __m256d b) { return _mm256_max_pd(a, b); }
inline __m256 greater(__m256 a, __m256 b) { return _mm256_max_ps(a, b); }
inline __m256d round_down(__m256d v) { return _mm256_floor_pd(v); }
inline __m256 round_down(__m256 v) { return _mm256_floor_ps(v); }
inline __m256d magnitude(__m256d v) { return _mm256_andnot_pd(_mm256_set1_pd(-0.0), v); }
inline __m256 magnitude(__m256 v) { return _mm256_andnot_ps(_mm256_set1_ps(-0.0f), v); }

// base[index[0]], base[index[1]], ... in the lanes.
template <class I>
inline __m256d gather(const double* base, const I* index) {
  const __m128d low = _mm_loadh_pd(_mm_load_sd(base + index[0]), base + index[1]);
  const __m128d high = _mm_loadh_pd(_mm_load_sd(base + index[2]), base + index[3]);
  return _mm256_insertf128_pd(_mm256_castpd128_pd256(low), high, 1);
}
template <class I>
inline __m256 gather(const float* base, const I* index) {
  return _mm256_setr_ps(base[index[0]], base[index[1]], base[index[2]], base[index[3]], base[index[4]],
                        base[index[5]], base[index[6]], base[index[7]]);
}

// Two neighbouring elements of lanes 0 and 1 each, starting at base + index: columns 0 and 1.
template <class I>
inline void gather_pairs(const double* base, const I* index, __m256d* column) {
  const auto rows = [=](int low, int high) {
    return _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(base + index[low])),
                                _mm_loadu_pd(base + index[high]), 1);
  };
  const __m256d even = rows(0, 2), odd = rows(1, 3);
  column[0] = _mm256_unpacklo_pd(even, odd);
  column[1] = _mm256_unpackhi_pd(even, odd);
}
template <class I>
inline void gather_pairs(const float* base, const I* index, __m256* column) {
  const auto pair = [=](int first) {  // rows `first` and `first` + 1
    const auto at = [=](int row) { return reinterpret_cast<const double*>(base + index[row]); };
    return _mm_castpd_ps(_mm_loadh_pd(_mm_load_sd(at(first)), at(first + 1)));
  };
  const __m256 a = _mm256_insertf128_ps(_mm256_castps128_ps256(pair(0)), pair(4), 1);
  const __m256 b = _mm256_insertf128_ps(_mm256_castps128_ps256(pair(2)), pair(6), 1);
  column[0] = _mm256_shuffle_ps(a, b, 0x88);
  column[1] = _mm256_shuffle_ps(a, b, 0xdd);
}

// Rows of `kOrder` elements, 2 to 4, starting at base + index: column[k] receives element k of each lane's
// row.
template <int kOrder, class I>
void gather_rows(const double* base, const I* index, __m256d (&column)[kOrder]) {
  gather_pairs(base, index, column);
  if constexpr (kOrder == 3) column[2] = gather(base + 2, index);
  if constexpr (kOrder == 4) gather_pairs(base + 2, index, column + 2);
}
template <int kOrder, class I>
void gather_rows(const float* base, const I* index, __m256 (&column)[kOrder]) {
  if constexpr (kOrder == 4) {
    const auto rows = [=](int low) {
      return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(base + index[low])),
                                  _mm_loadu_ps(base + index[low + 4]), 1);
    };
    const __m256 r0 = rows(0), r1 = rows(1), r2 = rows(2), r3 = rows(3);
    const __m256 a = _mm256_unpacklo_ps(r0, r1), b = _mm256_unpacklo_ps(r2, r3);
    const __m256 c = _mm256_unpackhi_ps(r0, r1), d = _mm256_unpackhi_ps(r2, r3);
    column[0] = _mm256_shuffle_ps(a, b, 0x44);
    column[1] = _mm256_shuffle_ps(a, b, 0xee);
    column[2] = _mm256_shuffle_ps(c, d, 0x44);
    column[3] = _mm256_shuffle_ps(c, d, 0xee);
  } else {
    gather_pairs(base, index, column);
    if constexpr (kOrder == 3) column[2] = gather(base + 2, index);
  }
}

// The way back: columns to contiguous rows of two or four elements.
inline void store_pairs(double* rows, __m256d c0, __m256d c1) {
  const __m256d a = _mm256_unpacklo_pd(c0, c1), b = _mm256_unpackhi_pd(c0, c1);
  store(rows, _mm256_permute2f128_pd(a, b, 0x20));
  store(rows + 4, _mm256_permute2f128_pd(a, b, 0x31));
}
inline void store_pairs(float* rows, __m256 c0, __m256 c1) {
  const __m256 a = _mm256_unpacklo_ps(c0, c1), b = _mm256_unpackhi_ps(c0, c1);
  store(rows, _mm256_permute2f128_ps(a, b, 0x20));
  store(rows + 8, _mm256_permute2f128_ps(a, b, 0x31));
}
inline void store_rows(double* rows, __m256d c0, __m256d c1, __m256d c2, __m256d c3) {
  const __m256d a = _mm256_unpacklo_pd(c0, c1), b = _mm256_unpackhi_pd(c0, c1);
  const __m256d c = _mm256_unpacklo_pd(c2, c3), d = _mm256_unpackhi_pd(c2, c3);
  store(rows, _mm256_permute2f128_pd(a, c, 0x20));
  store(rows + 4, _mm256_permute2f128_pd(b, d, 0x20));
  store(rows + 8, _mm256_permute2f128_pd(a, c, 0x31));
  store(rows + 12, _mm256_permute2f128_pd(b, d, 0x31));
}
inline void store_rows(float* rows, __m256 c0, __m256 c1, __m256 c2, __m256 c3) {
  const __m256 a = _mm256_unpacklo_ps(c0, c1), b = _mm256_unpackhi_ps(c0, c1);
  const __m256 c = _mm256_unpacklo_ps(c2, c3), d = _mm256_unpackhi_ps(c2, c3);
  const __m256 r0 = _mm256_shuffle_ps(a, c, 0x44), r1 = _mm256_shuffle_ps(a, c, 0xee);
  const __m256 r2 = _mm256_shuffle_ps(b, d, 0x44), r3 = _mm256_shuffle_ps(b, d, 0xee);
  store(rows, _mm256_permute2f128_ps(r0, r1, 0x20));
  store(rows + 8, _mm256_permute2f128_ps(r2, r3, 0x20));
  store(rows + 16, _mm256_permute2f128_ps(r0, r1, 0x31));
  store(rows + 24, _mm256_permute2f128_ps(r2, r3, 0x31));
}

}  // namespace rows
ORX_ISA_END
#endif
