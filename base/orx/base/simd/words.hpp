// Four words of 32 bits, or two of 64, beside the four doubles of lanes.hpp. The compiler gives all of them the operators
// of numbers, so that one template can be a recursion word by word and four words at a time. Needs AVX.
#pragma once
#include "orx/base/simd/lanes.hpp"

ORX_ISA_BEGIN(orx::simd)

typedef uint32_t Words4 __attribute__((vector_size(16)));
typedef int32_t Ints4 __attribute__((vector_size(16)));
typedef uint64_t Wide2 __attribute__((vector_size(16)));
typedef int64_t Longs2 __attribute__((vector_size(16)));

inline Words4 load4(const uint32_t* p) { return load<Words4>(p); }
inline void store4(uint32_t* p, Words4 w) { store(p, w); }
inline void store4(int32_t* p, Ints4 w) { store(p, w); }

// ---- words and words
// The lower, and the upper, halves of four 64-bit words.
inline Words4 low_halves(Wide2 a, Wide2 b) {
  return __builtin_shufflevector(Words4(a), Words4(b), 0, 2, 4, 6);
}
inline Words4 high_halves(Wide2 a, Wide2 b) {
  return __builtin_shufflevector(Words4(a), Words4(b), 1, 3, 5, 7);
}
// Words 0 and 2 of the first, 1 and 3 of the second.
inline Words4 alternate(Words4 even, Words4 odd) { return __builtin_shufflevector(even, odd, 0, 5, 2, 7); }
// The products of the lower halves, whole.
inline Wide2 multiply_wide(Wide2 a, Wide2 b) { return Wide2(native::multiply_wide(__m128i(a), __m128i(b))); }
inline Words4 min(Words4 a, Words4 b) { return Words4(_mm_min_epu32(__m128i(a), __m128i(b))); }
// Whether any word of a mask is set.
inline bool any(Words4 mask) { return native::any(__m128i(mask)); }
// All 128 bits as one number, lowest word first, times or divided by 2^(8 bytes).
template <int bytes>
inline Words4 shift_bytes_left(Words4 a) {
  return Words4(_mm_slli_si128(__m128i(a), bytes));
}
template <int bytes>
inline Words4 shift_bytes_right(Words4 a) {
  return Words4(_mm_srli_si128(__m128i(a), bytes));
}
// For each word of `index` the word of `table` that its low two bits name.
inline Words4 select_of_4(Words4 table, Words4 index) {
  return Words4(_mm_permutevar_ps(__m128(table), __m128i(index)));
}

// ---- words and doubles
inline Doubles to_doubles(Ints4 a) { return native::to_double(__m128i(a)); }
// Without a fraction; what does not fit becomes INT32_MIN.
inline Ints4 truncate_to_ints(Doubles x) { return Ints4(native::truncate_to_int(x)); }
inline Words4 low_words(Doubles x) { return Words4(native::low_words(x)); }
template <int mode>
inline Doubles round(Doubles x) {
  return native::round<mode>(x);
}
// Doubles of these bits: from 64-bit words, or from their lower and upper halves.
inline Doubles reals(Wide2 a, Wide2 b) { return native::join(__m128d(a), __m128d(b)); }
inline Doubles reals(Words4 low, Words4 high) {
  return reals(Wide2(__builtin_shufflevector(low, high, 0, 4, 1, 5)),
               Wide2(__builtin_shufflevector(low, high, 2, 6, 3, 7)));
}
// The lower, or the upper, half of each, below the upper half of `upper`.
inline Doubles lower_half_below(Doubles upper, Doubles x) {
  return Doubles(_mm256_blend_ps(__m256(x), __m256(upper), 0xAA));
}
inline Doubles upper_half_below(Doubles upper, Doubles x) {
  return Doubles(_mm256_blend_ps(_mm256_permute_ps(__m256(x), 0xF5), __m256(upper), 0xAA));
}

ORX_ISA_END
