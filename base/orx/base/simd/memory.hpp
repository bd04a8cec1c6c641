// Vectors to and from memory where that is more than a load or a store: the first few elements alone, and
// pairs that lie interleaved.
#pragma once
#include "orx/base/simd/simd.hpp"

ORX_ISA_BEGIN(orx::simd)

// Row c has its first c lanes set.
template <class T>
struct MaskRows {
  static constexpr int kLanes = kVectorBytes / sizeof(T);
  BitsOf<T> lane[kLanes + 1][kLanes];
  constexpr MaskRows() : lane{} {
    for (int c = 0; c <= kLanes; ++c)
      for (int i = 0; i < c; ++i) lane[c][i] = ~BitsOf<T>(0);
  }
};
template <class T>
alignas(64) inline constexpr MaskRows<T> kMaskRows{};

namespace native {

// All but a few elements of 16 bytes, in steps of halving size: a store through a mask takes longer, and a load
// that follows it waits.
inline void store_few(float* p, int count, __m128 x) {
  if (count & 2) {
    _mm_storel_pi(reinterpret_cast<__m64*>(p), x);
    x = _mm_movehl_ps(x, x);
    p += 2;
  }
  if (count & 1) _mm_store_ss(p, x);
}
inline void store_few(double* p, int count, __m128d x) {
  if (count & 1) _mm_store_sd(p, x);
}

#if defined(__AVX__)
inline __m128 low_half(__m256 x) { return _mm256_castps256_ps128(x); }
inline __m128d low_half(__m256d x) { return _mm256_castpd256_pd128(x); }
inline __m128 high_half(__m256 x) { return _mm256_extractf128_ps(x, 1); }
inline __m128d high_half(__m256d x) { return _mm256_extractf128_pd(x, 1); }
inline __m256 join(__m128 low, __m128 high) {
  return _mm256_insertf128_ps(_mm256_castps128_ps256(low), high, 1);
}

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
#else
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
#endif

}  // namespace native

// Every lane all ones or zero by its sign.
template <class T, int n>
inline Vec<T, n> spread_signs(Vec<T, n> x) {
  return from_ints<Vec<T, n>>(map(to_ints(x), [](__m128i v) {
    const __m128i signs = _mm_srai_epi32(v, 31);
    return sizeof(T) == 8 ? _mm_shuffle_epi32(signs, 0xF5) : signs;
  }));
}
// Lanes of `a` where the mask's lane is all ones, of `b` where it is zero.
template <class T, int n>
inline Vec<T, n> select(Vec<T, n> mask, Vec<T, n> a, Vec<T, n> b) {
  return bit_or(bit_and(mask, a), bit_andnot(mask, b));
}

// A mask of the first `count` lanes.
template <class X>
inline X first_lanes(int count) {
  static_assert(X::kCount == 1);
  return {{load<typename X::V, true>(kMaskRows<typename X::Element>.lane[count])}};
}

// The first `count` elements at p, `fill` in the other lanes; and the same way out. No other element is touched.
template <class X>
inline X load_first(const typename X::Element* p, int count, typename X::Element fill) {
  static_assert(X::kCount == 1);
  return {{native::load_few(p, count, broadcast<X>(fill).v[0])}};
}
template <class T>
inline void store_first(T* p, int count, Vec<T, 1> x) {
  if (count >= x.kLanes)
    store(p, x.v[0]);
  else
    native::store_few(p, count, x.v[0]);
}

// Interleaved pairs: the first of each in `a`, the second in `b`.
template <class X>
inline void load_pairs(const typename X::Element* p, X& a, X& b) {
  for (int i = 0; i < X::kCount; ++i) native::load_unzipped(p + 2 * i * X::kLanesEach, a.v[i], b.v[i]);
}
template <class T, int n>
inline void store_pairs(T* p, Vec<T, n> a, Vec<T, n> b) {
  for (int i = 0; i < n; ++i) native::store_zipped(p + 2 * i * a.kLanesEach, a.v[i], b.v[i]);
}
// The first `count` pairs, `fill` in the lanes of the others; and the same way out.
template <class X>
inline void load_first_pairs(const typename X::Element* p, int count, typename X::Element fill, X& a, X& b) {
  constexpr int lanes = X::kLanes;
  const int above = 2 * count - lanes;
  const X low = load_first<X>(p, above < 0 ? 2 * count : lanes, fill);
  const X high = load_first<X>(p + lanes, above < 0 ? 0 : above, fill);
  native::unzip(low.v[0], high.v[0], a.v[0], b.v[0]);
}
template <class T>
inline void store_first_pairs(T* p, int count, Vec<T, 1> a, Vec<T, 1> b) {
  constexpr int lanes = Vec<T, 1>::kLanes;
  native::zip(a.v[0], b.v[0]);
  store_first(p, 2 * count, a);
  if (2 * count > lanes) store_first(p + lanes, 2 * count - lanes, b);
}

ORX_ISA_END
