// Vectors. A Vec<T, n> is n vectors of the instruction set that go through the same steps side by side, so
// that a constant that comes from memory is loaded once for all of them.
//
// The integer side of a vec is an Ints<n>, made of 128-bit vectors, for AVX has no wider integer arithmetic.
#pragma once
#include <cstdint>
#include <cstring>

#include "orx/base/bits.hpp"
#include "orx/base/simd/isa.hpp"

ORX_ISA_BEGIN(orx::simd)

// ---- scalars
// A value that the compiler cannot see through: arithmetic on it happens at run time and raises its
// exceptions.
template <class T>
inline T hidden(T x) {
  asm volatile("" : "+x"(x));
  return x;
}

// ---- the instruction set's own vectors
namespace native {

template <class T, int bytes>
struct VectorType;
template <>
struct VectorType<float, 16> {
  using Type = __m128;
};
template <>
struct VectorType<double, 16> {
  using Type = __m128d;
};

inline __m128 bit_and(__m128 a, __m128 b) { return _mm_and_ps(a, b); }
inline __m128d bit_and(__m128d a, __m128d b) { return _mm_and_pd(a, b); }
inline __m128 bit_or(__m128 a, __m128 b) { return _mm_or_ps(a, b); }
inline __m128d bit_or(__m128d a, __m128d b) { return _mm_or_pd(a, b); }
inline __m128 bit_andnot(__m128 mask, __m128 a) { return _mm_andnot_ps(mask, a); }
inline __m128d bit_andnot(__m128d mask, __m128d a) { return _mm_andnot_pd(mask, a); }
inline int movemask(__m128 a) { return _mm_movemask_ps(a); }
inline int movemask(__m128d a) { return _mm_movemask_pd(a); }

#if defined(__AVX__)
template <>
struct VectorType<float, 32> {
  using Type = __m256;
};
template <>
struct VectorType<double, 32> {
  using Type = __m256d;
};

inline __m256 bit_and(__m256 a, __m256 b) { return _mm256_and_ps(a, b); }
inline __m256d bit_and(__m256d a, __m256d b) { return _mm256_and_pd(a, b); }
inline __m256 bit_or(__m256 a, __m256 b) { return _mm256_or_ps(a, b); }
inline __m256d bit_or(__m256d a, __m256d b) { return _mm256_or_pd(a, b); }
inline __m256 bit_andnot(__m256 mask, __m256 a) { return _mm256_andnot_ps(mask, a); }
inline __m256d bit_andnot(__m256d mask, __m256d a) { return _mm256_andnot_pd(mask, a); }
inline int movemask(__m256 a) { return _mm256_movemask_ps(a); }
inline int movemask(__m256d a) { return _mm256_movemask_pd(a); }

// Comparisons that are quiet for NaN.
inline __m256d not_below(__m256d x, __m256d y) { return _mm256_cmp_pd(x, y, _CMP_NLT_UQ); }
inline __m256 not_below(__m256 x, __m256 y) { return _mm256_cmp_ps(x, y, _CMP_NLT_UQ); }
inline __m256d not_at_least(__m256d x, __m256d y) { return _mm256_cmp_pd(x, y, _CMP_NGE_UQ); }
inline __m256 not_at_least(__m256 x, __m256 y) { return _mm256_cmp_ps(x, y, _CMP_NGE_UQ); }
inline __m256d not_at_most(__m256d x, __m256d y) { return _mm256_cmp_pd(x, y, _CMP_NLE_UQ); }
inline __m256 not_at_most(__m256 x, __m256 y) { return _mm256_cmp_ps(x, y, _CMP_NLE_UQ); }

inline __m256d join(__m128d low, __m128d high) {
  return _mm256_insertf128_pd(_mm256_castpd128_pd256(low), high, 1);
}
#endif

#if defined(__AVX__)
constexpr int kVectorBytes = 32;
#else
constexpr int kVectorBytes = 16;
#endif

}  // namespace native

using native::kVectorBytes;
template <class T, int bytes = kVectorBytes>
using VectorOf = typename native::VectorType<T, bytes>::Type;

template <class V, bool aligned = false>
inline V load(const void* p) {
  if constexpr (aligned) return *static_cast<const V*>(p);
  V v;
  std::memcpy(&v, p, sizeof v);
  return v;
}

template <bool aligned = false, class V>
inline void store(void* p, V v) {
  if constexpr (aligned)
    *static_cast<V*>(p) = v;
  else
    std::memcpy(p, &v, sizeof v);
}

// ---- n vectors
template <class T, int n>
struct Vec {
  using Element = T;
  using V = VectorOf<T>;
  static constexpr int kCount = n;
  static constexpr int kLanesEach = sizeof(V) / sizeof(T);
  static constexpr int kLanes = n * kLanesEach;
  V v[n];
};

// f(0), ..., f(n - 1) as the members of an R.
template <class R, int n, class F>
inline R gather_members(F f) {
  if constexpr (n == 1)
    return {{f(0)}};
  else if constexpr (n == 2)
    return {{f(0), f(1)}};
  else
    return {{f(0), f(1), f(2), f(3)}};
}
template <class T, int n, class F>
inline Vec<T, n> map(Vec<T, n> a, F f) {
  return gather_members<Vec<T, n>, n>([&](int i) { return f(a.v[i]); });
}
template <class T, int n, class F>
inline Vec<T, n> map(Vec<T, n> a, Vec<T, n> b, F f) {
  return gather_members<Vec<T, n>, n>([&](int i) { return f(a.v[i], b.v[i]); });
}

// A constant that fills a whole 64-byte row, so that it is an operand as it lies in memory.
template <class T>
struct alignas(64) Row {
  T lane[64 / sizeof(T)];
  constexpr Row(T value) : lane{} {
    for (T& x : lane) x = value;
  }
  auto vector() const { return load<VectorOf<T>, true>(lane); }
};

#define ORX_VECTOR_OPERATOR(op)                                 \
  template <class T, int n>                                     \
  inline Vec<T, n> operator op(Vec<T, n> a, Vec<T, n> b) {      \
    return map(a, b, [](auto x, auto y) { return x op y; });    \
  }                                                             \
  template <class T, int n>                                     \
  inline Vec<T, n> operator op(Vec<T, n> a, const Row<T>& b) {  \
    return map(a, [c = b.vector()](auto x) { return x op c; }); \
  }                                                             \
  template <class T, int n>                                     \
  inline Vec<T, n> operator op(const Row<T>& a, Vec<T, n> b) {  \
    return map(b, [c = a.vector()](auto x) { return c op x; }); \
  }
ORX_VECTOR_OPERATOR(+)
ORX_VECTOR_OPERATOR(-)
ORX_VECTOR_OPERATOR(*)
ORX_VECTOR_OPERATOR(/)
#undef ORX_VECTOR_OPERATOR

// A row, its bits taken as elements of X.
template <class X, class T>
inline X constant(const Row<T>& r) {
  return gather_members<X, X::kCount>([v = load<typename X::V, true>(r.lane)](int) { return v; });
}
// c[0] + c[1] x + ... by Estrin's scheme, whose steps wait less for each other than Horner's; x2 is x * x.
// What limits a kernel is how many elements fit in the processor's window while each waits for its own chain.
template <int first, int terms, class X, class C>
inline X estrin(X x, X x2, const C* c) {
  if constexpr (terms == 1)
    return constant<X>(c[first]);
  else if constexpr (terms == 2)
    return c[first] + x * c[first + 1];
  else if constexpr (terms == 3)
    return estrin<first, 2>(x, x2, c) + x2 * c[first + 2];
  else if constexpr (terms == 4)
    return estrin<first, 2>(x, x2, c) + x2 * estrin<first + 2, 2>(x, x2, c);
  else if constexpr (terms <= 8)
    return estrin<first, 4>(x, x2, c) + (x2 * x2) * estrin<first + 4, terms - 4>(x, x2, c);
  else
    return estrin<first, 8>(x, x2, c) + ((x2 * x2) * (x2 * x2)) * estrin<first + 8, terms - 8>(x, x2, c);
}
template <class X, class C, int terms>
inline X polynomial(X x, X x2, const C (&c)[terms]) {
  return estrin<0, terms>(x, x2, c);
}

template <class X>
inline X load_vectors(const typename X::Element* p) {
  return gather_members<X, X::kCount>([p](int i) { return load<typename X::V>(p + i * X::kLanesEach); });
}
template <bool aligned = false, class T, int n>
inline void store_vectors(T* p, Vec<T, n> x) {
  for (int i = 0; i < n; ++i) store<aligned>(p + i * Vec<T, n>::kLanesEach, x.v[i]);
}
// x - 0 is x, also for -0; a constant x is spread by the compiler.
template <class X>
inline X broadcast(typename X::Element x) {
  return gather_members<X, X::kCount>([x](int) { return x - typename X::V{}; });
}
template <class X>
inline X broadcast_bits(BitsOf<typename X::Element> bits) {
  return broadcast<X>(bit_cast<typename X::Element>(bits));
}

// ---- bits and comparisons; a lane mask is a vec whose lanes are all ones or zero
template <class T, int n>
inline Vec<T, n> bit_and(Vec<T, n> a, Vec<T, n> b) {
  return map(a, b, [](auto x, auto y) { return native::bit_and(x, y); });
}
template <class T, int n>
inline Vec<T, n> bit_or(Vec<T, n> a, Vec<T, n> b) {
  return map(a, b, [](auto x, auto y) { return native::bit_or(x, y); });
}
template <class T, int n>
inline Vec<T, n> bit_andnot(Vec<T, n> mask, Vec<T, n> a) {
  return map(mask, a, [](auto x, auto y) { return native::bit_andnot(x, y); });
}
template <class T, int n>
inline Vec<T, n> magnitude(Vec<T, n> x) {
  return bit_andnot(broadcast_bits<Vec<T, n>>(kSignBit<T>), x);
}
// The sign of `sign` or'ed into x.
template <class T, int n>
inline Vec<T, n> with_sign_of(Vec<T, n> x, Vec<T, n> sign) {
  return bit_or(x, bit_and(sign, broadcast_bits<Vec<T, n>>(kSignBit<T>)));
}
#if defined(__AVX__)
// Not low <= x <= high: true for NaN too.
template <class T, int n>
inline Vec<T, n> outside(Vec<T, n> x, const Row<T>& low, const Row<T>& high) {
  return map(x, [a = low.vector(), b = high.vector()](auto v) {
    return native::bit_or(native::not_at_least(v, a), native::not_at_most(v, b));
  });
}
// Not x < y: true for NaN too.
template <class T, int n>
inline Vec<T, n> not_below(Vec<T, n> x, const Row<T>& y) {
  return map(x, [c = y.vector()](auto v) { return native::not_below(v, c); });
}
#endif
// One bit for each lane's sign.
template <class T, int n>
inline int movemask(Vec<T, n> x) {
  int mask = 0;
  for (int i = 0; i < n; ++i) mask |= native::movemask(x.v[i]) << (i * Vec<T, n>::kLanesEach);
  return mask;
}
// Is any lane's sign set?
template <class T, int n>
inline bool any(Vec<T, n> x) {
  auto all = x.v[0];
  for (int i = 1; i < n; ++i) all = native::bit_or(all, x.v[i]);
  return native::movemask(all) != 0;
}

// ---- integers
template <int n>
struct Ints {
  __m128i v[n];
};
template <class X>
constexpr int kHalvesOf = X::kCount* kVectorBytes / 16;

template <int n, class F>
inline Ints<n> map(Ints<n> a, F f) {
  return gather_members<Ints<n>, n>([&](int i) { return f(a.v[i]); });
}
template <int n, class F>
inline Ints<n> map(Ints<n> a, Ints<n> b, F f) {
  return gather_members<Ints<n>, n>([&](int i) { return f(a.v[i], b.v[i]); });
}

// The bits of a vec as integers and back.
template <class T, int n>
inline auto to_ints(Vec<T, n> x) {
  constexpr int halves = kHalvesOf<Vec<T, n>>;
  return gather_members<Ints<halves>, halves>([&](int i) {
#if defined(__AVX__)
    const __m256i whole = reinterpret_cast<__m256i>(x.v[i / 2]);
    return i % 2 ? _mm256_extractf128_si256(whole, 1) : _mm256_castsi256_si128(whole);
#else
    return reinterpret_cast<__m128i>(x.v[i]);
#endif
  });
}
template <class X>
inline X from_ints(Ints<kHalvesOf<X>> a) {
  return gather_members<X, X::kCount>([&](int i) {
#if defined(__AVX__)
    return reinterpret_cast<typename X::V>(
        _mm256_insertf128_si256(_mm256_castsi128_si256(a.v[2 * i]), a.v[2 * i + 1], 1));
#else
    return reinterpret_cast<typename X::V>(a.v[i]);
#endif
  });
}

template <int n>
inline Ints<n> sub_from64(__m128i a, Ints<n> b) {
  return map(b, [a](__m128i x) { return _mm_sub_epi64(a, x); });
}
template <int n>
inline Ints<n> add64(Ints<n> a, Ints<n> b) {
  return map(a, b, [](__m128i x, __m128i y) { return _mm_add_epi64(x, y); });
}
template <int bits, int n>
inline Ints<n> shift_left32(Ints<n> a) {
  return map(a, [](__m128i x) { return _mm_slli_epi32(x, bits); });
}
template <int bits, int n>
inline Ints<n> shift_left64(Ints<n> a) {
  return map(a, [](__m128i x) { return _mm_slli_epi64(x, bits); });
}
// The bits of singles, read as 32-bit integers, as singles.
template <int n>
inline Vec<float, n> integer_bits(Vec<float, n> x) {
  return map(x, [](auto v) {
#if defined(__AVX__)
    return _mm256_cvtepi32_ps(_mm256_castps_si256(v));
#else
    return _mm_cvtepi32_ps(_mm_castps_si128(v));
#endif
  });
}

// ---- doubles: exponents and reciprocals
// The biased exponent field of positive lanes, as doubles.
template <int n>
inline Vec<double, n> exponent_field(Vec<double, n> x) {
  return map(x, [](auto v) {
#if defined(__AVX__)
    const __m128 high = _mm_shuffle_ps(_mm_castpd_ps(_mm256_castpd256_pd128(v)),
                                       _mm_castpd_ps(_mm256_extractf128_pd(v, 1)), 0xDD);
    return _mm256_cvtepi32_pd(_mm_srli_epi32(_mm_castps_si128(high), 20));
#else
    return _mm_cvtepi32_pd(_mm_srli_epi32(_mm_shuffle_epi32(_mm_castpd_si128(v), 0xDD), 20));
#endif
  });
}
// One integer for each lane, in memory, where the integer unit can take it from as an index: cheaper than
// moving the lanes over one by one, and it leaves the vector unit to the arithmetic.
template <class X>
struct Indices {
  alignas(16) int at[X::kLanes];
};

// 1/x to 1.5 * 2^-12.
template <int n>
inline Vec<float, n> approximate_reciprocal(Vec<float, n> x) {
  return map(x, [](auto v) {
#if defined(__AVX__)
    return _mm256_rcp_ps(v);
#else
    return _mm_rcp_ps(v);
#endif
  });
}

// scale/x rounded to an integer, from the single-precision approximation of 1/x, which is good to 1.5 *
// 2^-12: as doubles, and as indices. x and the result must be in the range of singles and integers.
template <class X>
inline X integer_reciprocal(X x, float scale, Indices<X>& index) {
  const auto rounded = [scale](__m128 v) {
    const __m128 reciprocal = _mm_rcp_ps(v);
    return _mm_cvtps_epi32(scale == 1.0f ? reciprocal : reciprocal * _mm_set1_ps(scale));
  };
  const X result = gather_members<X, X::kCount>([&](int i) {
#if defined(__AVX__)
    const __m128i r = rounded(_mm256_cvtpd_ps(x.v[i]));
    store<true>(index.at + 4 * i, r);
    return _mm256_cvtepi32_pd(r);
#else
    const __m128 single = _mm_cvtpd_ps(x.v[i]);
    const __m128i r = rounded(
        _mm_movelh_ps(single, single));  // no lane left 0, or its infinite reciprocal would raise invalid
    _mm_storel_epi64(reinterpret_cast<__m128i*>(index.at + 2 * i), r);
    return _mm_cvtepi32_pd(r);
#endif
  });
  asm("" : "+m"(index.at));  // or the compiler would look through the stores
  return result;
}

// 2^k, k being n >> bit, from N = shifter + n, where the shifter holds the exponent's bias times 2^bit in its
// low bits.
template <int bit, class X>
inline X scale_from(X N) {
  if constexpr (bit > 0) N = bit_andnot(broadcast_bits<X>((1u << bit) - 1), N);
  if constexpr (sizeof(typename X::Element) == 8)
    return from_ints<X>(shift_left64<52 - bit>(to_ints(N)));
  else
    return from_ints<X>(shift_left32<23 - bit>(to_ints(N)));
}

// ---- look-up
// The lanes of a vec of doubles in memory, where the integer unit can take their low words from: cheaper than
// moving them over one by one, and it leaves the vector unit to the arithmetic.
template <class X>
struct SpilledWords {
  alignas(kVectorBytes) int word[2 * X::kLanes];
  explicit SpilledWords(X x) {
    store_vectors<true>(reinterpret_cast<double*>(word), x);
    asm("" : "+m"(word));  // or the compiler would look through the store
  }
  int low(int lane) const { return word[2 * lane]; }
  Ints<kHalvesOf<X>> bits() const {
    return gather_members<Ints<kHalvesOf<X>>, kHalvesOf<X>>(
        [this](int i) { return load<__m128i, true>(word + 4 * i); });
  }
  X vector() const {
    return gather_members<X, X::kCount>(
        [this](int i) { return load<typename X::V, true>(word + 2 * i * X::kLanesEach); });
  }
};

// The 64-bit words of a table that index(lane) names.
template <class X, class W, class F>
inline Ints<kHalvesOf<X>> gather64(const W* table, F index) {
  return gather_members<Ints<kHalvesOf<X>>, kHalvesOf<X>>([&](int i) {
    const auto word = [&](int lane) { return reinterpret_cast<const double*>(table + index(lane)); };
    return _mm_castpd_si128(_mm_loadh_pd(_mm_load_sd(word(2 * i)), word(2 * i + 1)));
  });
}

// Pairs of doubles, 16-byte aligned: the first of each in `first`, the second in `second`.
template <class X, class F>
inline void gather_pairs(const double* table, F index, X& first, X& second) {
  for (int i = 0; i < X::kCount; ++i) {
    const auto pair = [&](int lane) { return _mm_load_pd(table + 2 * index(i * X::kLanesEach + lane)); };
#if defined(__AVX__)
    const __m256d even = native::join(pair(0), pair(2)), odd = native::join(pair(1), pair(3));
    first.v[i] = _mm256_unpacklo_pd(even, odd);
    second.v[i] = _mm256_unpackhi_pd(even, odd);
#else
    const __m128d even = pair(0), odd = pair(1);
    first.v[i] = _mm_unpacklo_pd(even, odd);
    second.v[i] = _mm_unpackhi_pd(even, odd);
#endif
  }
}

#if defined(__AVX__)
// For each lane the element of `table` (four, held twice) that the low two bits of `n`'s lane name.
template <int n>
inline Vec<float, n> select_of_4(const float* table, Vec<float, n> index) {
  return map(index, [t = load<__m256, true>(table)](__m256 i) {
    return _mm256_permutevar_ps(t, _mm256_castps_si256(i));
  });
}
#endif

ORX_ISA_END
