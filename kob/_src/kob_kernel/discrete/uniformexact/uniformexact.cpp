// Uniform integers without bias: D. Lemire, Fast random integer generation in an interval, ACM Trans. Model.
// Comput. Simul. 29 (2019). A word of 64 bits times the number of integers has the integer above bit 64 and a
// fraction below; words with a fraction below 2^64 mod the number are refused, fewer than one in 2^32.
#include <immintrin.h>

#include "distribution.hpp"
#include "wide_words.hpp"

namespace {

using namespace orx::rng;

// So many requests refused whole, one after the other, come from a generator that stands still.
constexpr int kMostRefusals = 16;

class Interval {
 public:
  Interval(int32_t first, uint32_t size)
      : first_(first), size_(size), refused_((0 - uint64_t(size)) % size) {}

  // False where the word is refused.
  bool take(uint64_t word, int32_t* r) const {
    const uint64_t lower = uint64_t(uint32_t(word)) * size_;
    const uint64_t upper = (word >> 32) * size_ + (lower >> 32);
    *r = int32_t(uint32_t(first_) + uint32_t(upper >> 32));
    return (upper << 32 | uint32_t(lower)) >= refused_;
  }

  // The same of four words at once. False where one of them may have to be refused: the upper half of its
  // fraction is 0.
  bool take4(const uint64_t* words, int32_t* r) const {
    const __m128i upper0 = upper2(words), upper1 = upper2(words + 2);
    const __m128i fractions = shuffled<0x88>(upper0, upper1), integers = shuffled<0xDD>(upper0, upper1);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(r), _mm_add_epi32(integers, _mm_set1_epi32(first_)));
    return _mm_testz_si128(_mm_cmpeq_epi32(fractions, _mm_setzero_si128()), _mm_set1_epi32(-1));
  }

 private:
  __m128i upper2(const uint64_t* words) const {
    const __m128i w = _mm_load_si128(reinterpret_cast<const __m128i*>(words));
    const __m128i size = _mm_set1_epi32(int32_t(size_));
    const __m128i lower = _mm_mul_epu32(w, size);
    return _mm_add_epi64(_mm_mul_epu32(_mm_srli_epi64(w, 32), size), _mm_srli_epi64(lower, 32));
  }
  template <int choice>
  static __m128i shuffled(__m128i x, __m128i y) {
    return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(x), _mm_castsi128_ps(y), choice));
  }

  int32_t first_;
  uint32_t size_;
  uint64_t refused_;
};

// Integers of the words that are not refused; how many.
int take_all(const Interval& interval, const uint64_t* words, int count, int32_t* r) {
  int taken = 0, i = 0;
  const auto singly = [&](int end) {
    for (; i < end; ++i) taken += interval.take(words[i], r + taken);
  };
  while (i + 4 <= count)
    if (interval.take4(words + i, r + taken))
      i += 4, taken += 4;
    else
      singly(i + 4);
  singly(count);
  return taken;
}

int integers(KobStream* stream, int n, int32_t* r, int32_t a, int32_t b) {
  if (a >= b) return KOB_ERROR_BAD_ARG;
  const Interval interval(a, uint32_t(b) - uint32_t(a));
  alignas(16) uint64_t words[kBlock];
  for (int done = 0, refusals = 0; done < n;) {
    const int count = std::min(n - done, kBlock);
    const int status = wide_words(stream, count, words);
    if (status < 0) return status;
    const int taken = take_all(interval, words, count, r + done);
    refusals = taken > 0 ? 0 : refusals + 1;
    if (refusals == kMostRefusals) return KOB_ERROR_BAD_ARG;
    done += taken;
  }
  return KOB_STATUS_OK;
}

}  // namespace

ORX_API int orx_kob_iRngUniformExact(int, KobStream* stream, int n, int32_t r[], int32_t a, int32_t b) {
  return integers(stream, n, r, a, b);
}
