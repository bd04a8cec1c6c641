// Radix sort of floating-point numbers by their bit patterns, 32 bits of them at a time.
//
// A float is one such word. Of a double the high word alone puts most data in order, all but short runs of
// numbers that share it; each run is then sorted by its low words. A word is sorted by its digits, the least
// significant one first.
#include <cstdint>
#include <cstring>

#include "orx/base/api.hpp"
#include "orx/primitives.h"

namespace {

template <class T>
uint32_t word_at(const T* element, int offset) {
  uint32_t word;
  std::memcpy(&word, reinterpret_cast<const char*>(element) + offset, 4);
  return word;
}

// The word that holds the sign, so that it rises in total order: the bits of positive numbers rise with the
// numbers, those of negative ones fall.
template <class T>
struct HighWord {
  uint32_t operator()(const T* element) const {
    const uint32_t word = word_at(element, sizeof(T) - 4);
    return word ^ (uint32_t(int32_t(word) >> 31) | 0x80000000u);
  }
};

// The other word of a double, among numbers of one sign.
struct LowWord {
  uint32_t flip;
  uint32_t operator()(const double* element) const { return word_at(element, 0) ^ flip; }
};

// The digits of a word: kPasses of them, of `bits` bits but for the last one, which may have fewer.
template <int bits>
struct Digits {
  static constexpr int kPasses = (32 + bits - 1) / bits;
  static constexpr unsigned kBuckets = 1u << bits;
  static unsigned get(uint32_t word, int pass) { return word >> (pass * bits) & (kBuckets - 1); }
};

// Turns the counts of a digit into the positions at which its buckets start.
inline void make_positions(uint32_t* counts, unsigned buckets) {
  uint32_t position = 0;
  for (unsigned d = 0; d < buckets; ++d) {
    const uint32_t here = counts[d];
    counts[d] = position;
    position += here;
  }
}

// One pass after the other, the data going to and fro between the two arrays; a digit that all elements share
// needs no pass.
template <int bits, class T, class Word>
__attribute__((noinline)) void sort_digits(T* data, T* work, int n, Word word) {
  using D = Digits<bits>;
  uint32_t counts[D::kPasses][D::kBuckets];
  std::memset(counts, 0, sizeof counts);
  for (int i = 0; i < n; ++i) {
    const uint32_t w = word(data + i);
    for (int pass = 0; pass < D::kPasses; ++pass) ++counts[pass][D::get(w, pass)];
  }
  T *from = data, *to = work;
#pragma GCC unroll 4
  for (int pass = 0; pass < D::kPasses; ++pass) {
    uint32_t* const positions = counts[pass];
    if (positions[D::get(word(from), pass)] == uint32_t(n)) continue;
    make_positions(positions, D::kBuckets);
    for (int i = 0; i < n; ++i) to[positions[D::get(word(from + i), pass)]++] = from[i];
    T* const sorted = to;
    to = from;
    from = sorted;
  }
  if (from != data) std::memcpy(data, from, n * sizeof(T));
}

// The bits of a number as a signed integer that rises in total order.
inline int32_t rank(float x) {
  int32_t bits;
  std::memcpy(&bits, &x, 4);
  return bits ^ int32_t(uint32_t(bits >> 31) >> 1);
}
inline int64_t rank(double x) {
  int64_t bits;
  std::memcpy(&bits, &x, 8);
  return bits ^ int64_t(uint64_t(bits >> 63) >> 1);
}

template <class T>
void insertion_sort(T* data, int n) {
  for (int i = 1; i < n; ++i) {
    const T x = data[i];
    const auto key = rank(x);
    int j = i;
    for (; j > 0 && rank(data[j - 1]) > key; --j) data[j] = data[j - 1];
    data[j] = x;
  }
}

// Few elements are sorted by insertion, by all of their bits. Few buckets serve where clearing and summing
// many would cost more than the pass that they save. The result: whether all bits have been looked at.
template <class T, class Word>
bool sort_word(T* data, T* work, int n, Word word) {
  constexpr int insertion_limit = 30, narrow_limit = 1500;
  if (n <= insertion_limit) {
    insertion_sort(data, n);
    return true;
  }
  if (n <= narrow_limit)
    sort_digits<8>(data, work, n, word);
  else
    sort_digits<11>(data, work, n, word);
  return sizeof(T) == 4;
}

// Puts the numbers that share their high word in order.
void sort_runs(double* data, double* work, int n) {
  const auto high = [=](int i) { return word_at(data + i, 4); };
  for (int i = 1; i < n; ++i) {
    const uint32_t word = high(i);
    if (word != high(i - 1)) continue;
    double* const run = data + i - 1;
    while (++i < n && high(i) == word) {
    }
    const bool negative = int32_t(word) < 0;
    sort_word(run, work, int(data + i - run), LowWord{negative ? ~0u : 0u});
  }
}

}  // namespace

ORX_API void g9_ulosSortRadixAscend_32f_I(float* data, float* work, int n) {
  sort_word(data, work, n, HighWord<float>());
}
ORX_API void g9_ulosSortRadixAscend_64f_I(double* data, double* work, int n) {
  if (!sort_word(data, work, n, HighWord<double>())) sort_runs(data, work, n);
}
