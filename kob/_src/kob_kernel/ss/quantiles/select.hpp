// Several order statistics at once.
#pragma once

#include "_math/sort.hpp"

namespace orx::ss::quantiles {

// A pivot from elements drawn at random, so that no order of the data is worse than any other: the one that stands in
// the sample where the wanted place stands in the range.
template <class T>
class Sample {
 public:
  // Of elements l to r, for place k among them.
  void draw(const T* x, intptr_t l, intptr_t r, intptr_t k) {
    const uint64_t range = uint64_t(r) - uint64_t(l) + 1;
    for (int i = 0; i < kSize; ++i) sample_[i] = x[l + intptr_t((range * next()) >> 32)];
    sorting::sort(sample_, kSize, sorting::Contiguous());
    const int place = int((k - l) * kSize / (r - l + 1));
    pivot_ = sample_[place];
    repeats_ = (place > 0 && !(sample_[place - 1] < pivot_)) ||
               (place < kSize - 1 && !(pivot_ < sample_[place + 1]));
  }
  T pivot() const { return pivot_; }
  // Elements equal to the pivot are many.
  bool repeats() const { return repeats_; }

 private:
  uint32_t next() {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return uint32_t(state_ >> 32);
  }

  static constexpr int kSize = 31;
  T sample_[kSize], pivot_;
  bool repeats_;
  uint64_t state_ = 1;
};

// Puts elements l to r in such an order that those at the given places, which rise, are where a sort would put them.
template <class T>
void select_places(T* x, intptr_t l, intptr_t r, const int* places, int count, Sample<T>& sample) {
  constexpr intptr_t few = 100;
  const sorting::Range<T, sorting::Contiguous> range(x, {});
  while (count > 0 && r - l >= few) {
    sample.draw(x, l, r, places[count / 2]);
    const T pivot = sample.pivot();
    const intptr_t first = range.gather(l, r + 1, [=](T v) { return v < pivot; });
    // What lies from `first` to `rest` is equal to the pivot.
    intptr_t rest = first;
    if (sample.repeats() || first == l) rest = range.gather(first, r + 1, [=](T v) { return !(pivot < v); });
    int below = 0, done = 0;
    while (below < count && places[below] < first) ++below;
    for (done = below; done < count && places[done] < rest;) ++done;
    // The larger number of places waits in a loop, not on the stack.
    if (below < count - done) {
      select_places(x, l, first - 1, places, below, sample);
      places += done;
      count -= done;
      l = rest;
    } else {
      select_places(x, rest, r, places + done, count - done, sample);
      count = below;
      r = first - 1;
    }
  }
  if (count > 0 && l < r) sorting::sort(x + l, r - l + 1, sorting::Contiguous());
}

}  // namespace orx::ss::quantiles
