// Uniform integers without bias: D. Lemire, Fast random integer generation in an interval, ACM Trans. Model.
// Comput. Simul. 29 (2019). A word of 64 bits times the number of integers has the integer above bit 64 and a
// fraction below; words with a fraction below 2^64 mod the number are refused, fewer than one in 2^32.
#include "distribution.hpp"
#include "orx/base/simd/words.hpp"
#include "wide_words.hpp"

namespace {

using namespace orx::rng;
namespace simd = orx::simd;
using simd::Wide2;
using simd::Words4;

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
    const Wide2 upper0 = upper2(words), upper1 = upper2(words + 2);
    const Words4 fractions = simd::low_halves(upper0, upper1), integers = simd::high_halves(upper0, upper1);
    simd::store(r, integers + uint32_t(first_));
    return !simd::any(Words4(fractions == 0));
  }

 private:
  Wide2 upper2(const uint64_t* words) const {
    const Wide2 w = simd::load<Wide2>(words), size = size_ + Wide2{};
    return simd::multiply_wide(w >> 32, size) + (simd::multiply_wide(w, size) >> 32);
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
