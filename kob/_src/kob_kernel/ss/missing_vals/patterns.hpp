// Observations by the pattern of their missing values.
#pragma once

#include <cstring>

#include "orx/base/memory.hpp"
#include "ss_task.hpp"

namespace orx::ss::missing_vals {

// A missing value is a quiet NaN with its sign set; another NaN is a value like any other.
inline bool is_missing(double x) {
  uint64_t word;
  std::memcpy(&word, &x, sizeof word);
  return word >> 51 == 0x1FFF;
}
inline bool is_missing(float x) {
  uint32_t word;
  std::memcpy(&word, &x, sizeof word);
  return word >> 22 == 0x3FF;
}

struct Pattern {
  int first, count;  // its observations, as places in the list of them
  int observed;      // variables
};

// The patterns of a data set, in the order in which they first appear.
class Patterns {
 public:
  template <class T>
  int find(const Observations<T>& data) {
    n_ = data.n;
    words_ = (data.p + 63) / 64;
    int64_t slots = 2;
    while (slots < 2 * int64_t(n_)) slots *= 2;
    if (!bits_.allocate(int64_t(n_) * words_) || !patterns_.allocate(n_) || !members_.allocate(n_) ||
        !positions_.allocate(n_))
      return KOB_SS_ERROR_MEMORY;
    Block<int> table, pattern_of(n_);
    if (!table.allocate_zeros(slots) || !pattern_of) return KOB_SS_ERROR_MEMORY;
    for (int i = 0; i < n_; ++i) {
      positions_[i] = missing_;
      const int observed = mark(data, i);
      missing_ += data.p - observed;
      pattern_of[i] = number(table.get(), slots - 1, observed);
      ++patterns_[pattern_of[i]].count;
    }
    list(pattern_of.get());
    return KOB_SS_OK;
  }

  int count() const { return count_; }
  const Pattern& operator[](int k) const { return patterns_[k]; }
  bool is_observed(int k, int j) const { return bits(k)[j / 64] >> (j % 64) & 1; }
  // Observation i of the list, and the place of its first missing value among all of them.
  int member(int i) const { return members_[i]; }
  int64_t position(int observation) const { return positions_[observation]; }
  int64_t missing() const { return missing_; }

 private:
  uint64_t* bits(int k) const { return bits_.get() + intptr_t(k) * words_; }

  // Marks the observed values of observation i as those of the next new pattern; their number.
  template <class T>
  int mark(const Observations<T>& data, int i) {
    uint64_t* const marks = bits(count_);
    std::memset(marks, 0, size_t(words_) * sizeof *marks);
    int observed = 0;
    for (int j = 0; j < data.p; ++j) {
      if (is_missing(data(j, i))) continue;
      marks[j / 64] |= uint64_t(1) << (j % 64);
      ++observed;
    }
    return observed;
  }

  // The number of the pattern that is marked as the next new one, by a table of those that are known.
  int number(int* table, int64_t mask, int observed) {
    const uint64_t* const marks = bits(count_);
    uint64_t hash = 0;
    for (int w = 0; w < words_; ++w) hash = (hash ^ marks[w]) * 0x9E3779B97F4A7C15;
    int64_t slot = int64_t(hash >> 32) & mask;
    for (; table[slot] != 0; slot = (slot + 1) & mask)
      if (std::memcmp(bits(table[slot] - 1), marks, size_t(words_) * sizeof *marks) == 0)
        return table[slot] - 1;
    patterns_[count_] = {0, 0, observed};
    table[slot] = ++count_;
    return count_ - 1;
  }

  // Lists the observations, pattern by pattern.
  void list(const int* pattern_of) {
    for (int k = 0, first = 0; k < count_; ++k) {
      patterns_[k].first = first;
      first += patterns_[k].count;
      patterns_[k].count = 0;
    }
    for (int i = 0; i < n_; ++i) {
      Pattern& pattern = patterns_[pattern_of[i]];
      members_[pattern.first + pattern.count++] = i;
    }
  }

  int n_ = 0, words_ = 0, count_ = 0;
  int64_t missing_ = 0;
  Block<uint64_t> bits_;
  Block<Pattern> patterns_;
  Block<int> members_;
  Block<int64_t> positions_;
};

}  // namespace orx::ss::missing_vals
