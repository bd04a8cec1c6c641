// What the files of all instruction sets have in common: the types and functions that they fill in.
#pragma once
#include <cstring>

#include "orx/base/bits.hpp"
#include "orx/base/simd/isa.hpp"

ORX_ISA_BEGIN(orx::simd)

// A vector at any address and in any type's memory. As a packed member, not as bytes: GCC keeps what it has copied byte by
// byte on the stack where registers are few.
template <class V>
struct [[gnu::packed, gnu::may_alias]] Packed {
  V v;
};

template <class V, bool aligned = false>
inline V load(const void* p) {
  if constexpr (aligned)
    return *static_cast<const V*>(p);
  else
    return static_cast<const Packed<V>*>(p)->v;
}

template <bool aligned = false, class V>
inline void store(void* p, V v) {
  if constexpr (aligned)
    *static_cast<V*>(p) = v;
  else
    static_cast<Packed<V>*>(p)->v = v;
}

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

template <class T, int bytes>
struct VectorType;
template <>
struct VectorType<double, 16> {
  using Type = __m128d;
};
// Integers of 16, 32 or 64 bytes, as instructions take them.
template <int bytes>
struct IntegerType;
template <>
struct IntegerType<16> {
  using Type = __m128i;
};
template <class I>
inline auto whole(I a) {
  return (typename IntegerType<sizeof(I)>::Type)a;
}

inline __m128i multiply_wide(__m128i a, __m128i b) { return _mm_mul_epu32(a, b); }
inline bool any(__m128i a) { return _mm_movemask_epi8(a) != 0; }

template <class V>
struct WordsOf {
  typedef long long Type __attribute__((vector_size(sizeof(V))));
};
template <class V>
inline auto words(V a) {
  return (typename WordsOf<V>::Type)a;
}
template <class V>
inline V complement(V a) {
  return (V)~words(a);
}

// Operations on the bits of reals, by the instructions for reals: to cross to the integer units costs time.
#define ORX_NATIVE_BITS(V, prefix, suffix)                                       \
  inline V bit_and(V a, V b) { return prefix##_and_##suffix(a, b); }             \
  inline V bit_or(V a, V b) { return prefix##_or_##suffix(a, b); }               \
  inline V bit_xor(V a, V b) { return prefix##_xor_##suffix(a, b); }             \
  inline V bit_andnot(V mask, V a) { return prefix##_andnot_##suffix(mask, a); } \
  inline V keep(V mask, V a) { return prefix##_and_##suffix(mask, a); }          \
  inline V select(V mask, V a, V b) { return bit_or(bit_and(mask, a), bit_andnot(mask, b)); }

// Every lane all ones or zero by its sign.
inline __m128 spread_signs(__m128 a) { return _mm_castsi128_ps(_mm_srai_epi32(_mm_castps_si128(a), 31)); }
inline __m128d spread_signs(__m128d a) {
  return _mm_castsi128_pd(_mm_shuffle_epi32(_mm_srai_epi32(_mm_castpd_si128(a), 31), 0xF5));
}

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

#if !defined(__FMA__)
template <class V>
inline V multiply_add(V a, V b, V c) {
  return a * b + c;
}
template <class V>
inline V multiply_subtract(V a, V b, V c) {
  return a * b - c;
}
template <class V>
inline V subtract_product(V c, V a, V b) {
  return c - a * b;
}
#endif

}  // namespace native
ORX_ISA_END
