// The vectors of the instruction set, by element type and width. GCC and Clang give them + - * /; here is the rest.
// A 256-bit vector of integers is a pair of 128-bit ones, for AVX has no integer arithmetic of that width.
#pragma once
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "frame/isa.hpp"

ORX_ISA_BEGIN

namespace detail {
template <class T, int bytes>
struct vector_type;
template <>
struct vector_type<float, 16> { using type = __m128; };
template <>
struct vector_type<double, 16> { using type = __m128d; };
template <class V>
struct element_type;
template <>
struct element_type<__m128> { using type = float; };
template <>
struct element_type<__m128d> { using type = double; };
#if defined(__AVX__)
template <>
struct vector_type<float, 32> { using type = __m256; };
template <>
struct vector_type<double, 32> { using type = __m256d; };
template <>
struct element_type<__m256> { using type = float; };
template <>
struct element_type<__m256d> { using type = double; };
#endif
}  // namespace detail

template <class T, int bytes>
using vector_of = typename detail::vector_type<T, bytes>::type;
template <class V>
using element_of = typename detail::element_type<V>::type;
template <class V>
constexpr int lanes_of = sizeof(V) / sizeof(element_of<V>);
template <class T>
using bits_of = std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>;
template <class T>
constexpr bits_of<T> sign_bit = bits_of<T>(1) << (8 * sizeof(T) - 1);

#if defined(__AVX__)
constexpr int vector_bytes = 32;
#else
constexpr int vector_bytes = 16;
#endif
template <class T>
using widest = vector_of<T, vector_bytes>;

// Scalars as bits and back.
template <class To, class From>
inline To bit_cast(From from) {
  static_assert(sizeof(To) == sizeof(From));
  To to;
  std::memcpy(&to, &from, sizeof to);
  return to;
}

// A value that the compiler cannot see through: arithmetic on it happens at run time and raises its exceptions.
template <class T>
inline T hidden(T x) {
  asm volatile("" : "+x"(x));
  return x;
}

// ---- loads and stores. A 256-bit vector that may not be aligned is read as two halves.
template <class V, bool aligned = false>
inline V load(const void* p) {
  if constexpr (aligned) {
    return *static_cast<const V*>(p);
  } else if constexpr (sizeof(V) == 16) {
    V v;
    std::memcpy(&v, p, sizeof v);
    return v;
  } else {
#if defined(__AVX__)
    const char* bytes = static_cast<const char*>(p);
    return reinterpret_cast<V>(_mm256_insertf128_si256(_mm256_castsi128_si256(load<__m128i>(bytes)),
                                                       load<__m128i>(bytes + 16), 1));
#endif
  }
}

template <bool aligned = false, class V>
inline void store(void* p, V v) {
  if constexpr (aligned)
    *static_cast<V*>(p) = v;
  else
    std::memcpy(p, &v, sizeof v);
}

// x - 0 is x, also for -0; a constant x is spread by the compiler.
template <class V>
inline V broadcast(element_of<V> x) {
  return x - V{};
}

// ---- a constant that fills a whole 64-byte row, so that it can be an operand as it lies in memory
template <class T>
struct alignas(64) row {
  T lane[64 / sizeof(T)];
  constexpr row(T value) : lane{} {
    for (T& x : lane) x = value;
  }
  using V = vector_of<T, vector_bytes>;
  operator V() const { return *reinterpret_cast<const V*>(lane); }
  friend V operator+(V a, const row& b) { return a + V(b); }
  friend V operator-(V a, const row& b) { return a - V(b); }
  friend V operator*(V a, const row& b) { return a * V(b); }
  friend V operator+(const row& a, V b) { return V(a) + b; }
  friend V operator-(const row& a, V b) { return V(a) - b; }
  friend V operator*(const row& a, V b) { return V(a) * b; }
};

// ---- bits of floating-point vectors
inline __m128 bit_and(__m128 a, __m128 b) { return _mm_and_ps(a, b); }
inline __m128d bit_and(__m128d a, __m128d b) { return _mm_and_pd(a, b); }
inline __m128 bit_or(__m128 a, __m128 b) { return _mm_or_ps(a, b); }
inline __m128d bit_or(__m128d a, __m128d b) { return _mm_or_pd(a, b); }
inline __m128 bit_andnot(__m128 mask, __m128 a) { return _mm_andnot_ps(mask, a); }
inline __m128d bit_andnot(__m128d mask, __m128d a) { return _mm_andnot_pd(mask, a); }
inline int movemask(__m128 a) { return _mm_movemask_ps(a); }
inline int movemask(__m128d a) { return _mm_movemask_pd(a); }
#if defined(__AVX__)
inline __m256 bit_and(__m256 a, __m256 b) { return _mm256_and_ps(a, b); }
inline __m256d bit_and(__m256d a, __m256d b) { return _mm256_and_pd(a, b); }
inline __m256 bit_or(__m256 a, __m256 b) { return _mm256_or_ps(a, b); }
inline __m256d bit_or(__m256d a, __m256d b) { return _mm256_or_pd(a, b); }
inline __m256 bit_andnot(__m256 mask, __m256 a) { return _mm256_andnot_ps(mask, a); }
inline __m256d bit_andnot(__m256d mask, __m256d a) { return _mm256_andnot_pd(mask, a); }
inline int movemask(__m256 a) { return _mm256_movemask_ps(a); }
inline int movemask(__m256d a) { return _mm256_movemask_pd(a); }
#endif

template <class V>
inline V broadcast_bits(bits_of<element_of<V>> bits) {
  return broadcast<V>(bit_cast<element_of<V>>(bits));
}

// The sign of `sign` or'ed into x.
template <class V>
inline V with_sign_of(V x, V sign) {
  return bit_or(x, bit_and(sign, broadcast_bits<V>(sign_bit<element_of<V>>)));
}

// ---- integers: the bits of a vector V as one or two 128-bit halves
template <int halves>
struct ints {
  __m128i half[halves];
};

template <class V>
inline auto to_ints(V v) {
  if constexpr (sizeof(V) == 16) {
    return ints<1>{{reinterpret_cast<__m128i>(v)}};
  } else {
#if defined(__AVX__)
    const __m256i bits = reinterpret_cast<__m256i>(v);
    return ints<2>{{_mm256_castsi256_si128(bits), _mm256_extractf128_si256(bits, 1)}};
#endif
  }
}

template <class V>
inline V from_ints(ints<1> v) {
  return reinterpret_cast<V>(v.half[0]);
}
#if defined(__AVX__)
template <class V>
inline V from_ints(ints<2> v) {
  return reinterpret_cast<V>(_mm256_insertf128_si256(_mm256_castsi128_si256(v.half[0]), v.half[1], 1));
}
#endif

template <int halves, class F>
inline ints<halves> each(ints<halves> a, F f) {
  if constexpr (halves == 1)
    return {{f(a.half[0])}};
  else
    return {{f(a.half[0]), f(a.half[1])}};
}
template <int halves, class F>
inline ints<halves> each(ints<halves> a, ints<halves> b, F f) {
  if constexpr (halves == 1)
    return {{f(a.half[0], b.half[0])}};
  else
    return {{f(a.half[0], b.half[0]), f(a.half[1], b.half[1])}};
}

template <int halves>
inline ints<halves> add32(ints<halves> a, ints<halves> b) {
  return each(a, b, [](__m128i x, __m128i y) { return _mm_add_epi32(x, y); });
}
template <int halves>
inline ints<halves> add32(ints<halves> a, __m128i b) {
  return each(a, [b](__m128i x) { return _mm_add_epi32(x, b); });
}
template <int halves>
inline ints<halves> sub32(ints<halves> a, __m128i b) {
  return each(a, [b](__m128i x) { return _mm_sub_epi32(x, b); });
}
template <int halves>
inline ints<halves> add64(ints<halves> a, ints<halves> b) {
  return each(a, b, [](__m128i x, __m128i y) { return _mm_add_epi64(x, y); });
}
template <int halves>
inline ints<halves> bit_and(ints<halves> a, __m128i b) {
  return each(a, [b](__m128i x) { return _mm_and_si128(x, b); });
}
template <int halves>
inline ints<halves> bit_andnot(__m128i mask, ints<halves> a) {
  return each(a, [mask](__m128i x) { return _mm_andnot_si128(mask, x); });
}
template <int count, int halves>
inline ints<halves> shift_left32(ints<halves> a) {
  return each(a, [](__m128i x) { return _mm_slli_epi32(x, count); });
}
template <int count, int halves>
inline ints<halves> shift_left64(ints<halves> a) {
  return each(a, [](__m128i x) { return _mm_slli_epi64(x, count); });
}
template <int count, int halves>
inline ints<halves> shift_right32(ints<halves> a) {
  return each(a, [](__m128i x) { return _mm_srli_epi32(x, count); });
}
template <int count, int halves>
inline ints<halves> shift_right_signed32(ints<halves> a) {
  return each(a, [](__m128i x) { return _mm_srai_epi32(x, count); });
}
template <int halves>
inline ints<halves> greater32(ints<halves> a, __m128i b) {
  return each(a, [b](__m128i x) { return _mm_cmpgt_epi32(x, b); });
}
template <int halves>
inline ints<halves> less32(ints<halves> a, __m128i b) {
  return each(a, [b](__m128i x) { return _mm_cmplt_epi32(x, b); });
}
// One bit for each 32-bit lane.
inline int movemask32(ints<1> a) { return _mm_movemask_ps(_mm_castsi128_ps(a.half[0])); }
inline int movemask32(ints<2> a) {
  return _mm_movemask_epi8(_mm_packs_epi16(_mm_packs_epi32(a.half[0], a.half[1]), _mm_setzero_si128()));
}
inline __m128i to_float_lanes(__m128i x) { return _mm_castps_si128(_mm_cvtepi32_ps(x)); }
// 32-bit integers to singles.
template <class V, int halves>
inline V to_float(ints<halves> a) {
  return from_ints<V>(each(a, to_float_lanes));
}

// ---- the high and low words of the lanes of a vector of doubles, side by side in the first lanes of one vector
inline __m128i high_words(__m128d v) { return _mm_shuffle_epi32(_mm_castpd_si128(v), 0xDD); }
inline __m128i low_words(__m128d v) { return _mm_shuffle_epi32(_mm_castpd_si128(v), 0x88); }
// The reverse: a vector of doubles whose high words are given and whose low words are 0.
template <class V>
inline ints<sizeof(V) / 16> as_high_words(__m128i words) {
  const __m128i zero = _mm_setzero_si128();
  if constexpr (sizeof(V) == 16)
    return {{_mm_unpacklo_epi32(zero, words)}};
  else
    return {{_mm_unpacklo_epi32(zero, words), _mm_unpackhi_epi32(zero, words)}};
}
// One bit for each double of V, from the comparison result of its word.
template <class V>
inline int movemask_words(__m128i words) {
  return _mm_movemask_ps(_mm_castsi128_ps(words)) & ((1 << lanes_of<V>)-1);
}
template <class V>
inline V to_double(__m128i words);
template <>
inline __m128d to_double<__m128d>(__m128i words) {
  return _mm_cvtepi32_pd(words);
}
#if defined(__AVX__)
template <int selection>
inline __m128i select_words(__m256d v) {
  return _mm_castps_si128(_mm_shuffle_ps(_mm_castpd_ps(_mm256_castpd256_pd128(v)),
                                         _mm_castpd_ps(_mm256_extractf128_pd(v, 1)), selection));
}
inline __m128i high_words(__m256d v) { return select_words<0xDD>(v); }
inline __m128i low_words(__m256d v) { return select_words<0x88>(v); }
template <>
inline __m256d to_double<__m256d>(__m128i words) {
  return _mm256_cvtepi32_pd(words);
}
#endif

// ---- look-up
// The byte at `offset` of a table.
inline const double* entry(const void* table, int offset) {
  return reinterpret_cast<const double*>(static_cast<const char*>(table) + offset);
}
// Pairs (hi, lo) at the byte offsets in the first lanes of `offsets`, 16-byte aligned.
inline void gather_pairs(const void* table, __m128i offsets, __m128d& hi, __m128d& lo) {
  const __m128d a = _mm_load_pd(entry(table, _mm_cvtsi128_si32(offsets)));
  const __m128d b = _mm_load_pd(entry(table, _mm_cvtsi128_si32(_mm_shuffle_epi32(offsets, 1))));
  hi = _mm_unpacklo_pd(a, b);
  lo = _mm_unpackhi_pd(a, b);
}
inline __m128d gather(const void* table, __m128i offsets, __m128d*) {
  return _mm_loadh_pd(_mm_load_sd(entry(table, _mm_cvtsi128_si32(offsets))),
                      entry(table, _mm_cvtsi128_si32(_mm_shuffle_epi32(offsets, 1))));
}
#if defined(__AVX__)
inline void gather_pairs(const void* table, __m128i offsets, __m256d& hi, __m256d& lo) {
  const __m128d a = _mm_load_pd(entry(table, _mm_cvtsi128_si32(offsets)));
  const __m128d b = _mm_load_pd(entry(table, _mm_extract_epi32(offsets, 1)));
  const double* c = entry(table, _mm_extract_epi32(offsets, 2));
  const double* d = entry(table, _mm_extract_epi32(offsets, 3));
  const __m256d ac = _mm256_insertf128_pd(_mm256_castpd128_pd256(a), _mm_load_pd(c), 1);
  const __m256d bd = _mm256_insertf128_pd(_mm256_castpd128_pd256(b), _mm_load_pd(d), 1);
  hi = _mm256_unpacklo_pd(ac, bd);
  lo = _mm256_unpackhi_pd(ac, bd);
}
inline __m256d gather(const void* table, __m128i offsets, __m256d*) {
  const __m128d low = _mm_loadh_pd(_mm_load_sd(entry(table, _mm_cvtsi128_si32(offsets))),
                                   entry(table, _mm_extract_epi32(offsets, 1)));
  const __m128d high = _mm_loadh_pd(_mm_load_sd(entry(table, _mm_extract_epi32(offsets, 2))),
                                    entry(table, _mm_extract_epi32(offsets, 3)));
  return _mm256_insertf128_pd(_mm256_castpd128_pd256(low), high, 1);
}
#endif
// The doubles at the byte offsets in the first lanes of `offsets`.
template <class V>
inline V gather(const void* table, __m128i offsets) {
  return gather(table, offsets, static_cast<V*>(nullptr));
}

#if defined(__AVX__)
// For each lane, the element of `table` (four, held twice) that the low two bits of `n`'s lane name.
inline __m256 select_of_4(__m256 table, __m256 n) { return _mm256_permutevar_ps(table, _mm256_castps_si256(n)); }
#endif

// ---- rounding and reciprocals
// 1/x to about 11 bits, from the single-precision instruction; x must be in its range.
inline __m128d approximate_reciprocal(__m128d x) { return _mm_cvtps_pd(_mm_rcp_ps(_mm_cvtpd_ps(x))); }
#if defined(__AVX__)
inline __m256d approximate_reciprocal(__m256d x) { return _mm256_cvtps_pd(_mm_rcp_ps(_mm256_cvtpd_ps(x))); }
inline __m256d round_to_integer(__m256d x) { return _mm256_round_pd(x, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC); }
#else
inline __m128d round_to_integer(__m128d x) {
  const __m128d shifter = _mm_set1_pd(0x1.8p52);
  return (x + shifter) - shifter;
}
#endif

ORX_ISA_END
