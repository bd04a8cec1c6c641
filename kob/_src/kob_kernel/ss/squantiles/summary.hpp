// The summary of one variable of a stream: sorted runs of its values, merged by pairs and thinned to every second
// value, as bits carry in a binary counter.
//
// Of m values up to x, taking every second one from the first on keeps ceil(m/2), each for two: the number told
// is the true one or one more. With values that stand for 2^l each a thinning thus adds to the error between 0
// and 2^l, 2^(l-1) to either side of its middle. No bounds of ranks need be kept for single values: what a run may
// be off is one number, and errors of runs add up. (Manku, Rajagopalan & Lindsay, Approximate medians and other
// quantiles in one pass and with limited memory, SIGMOD 1998; Zhang & Wang, A fast algorithm for approximate
// quantiles in high speed data streams, SSDBM 2007, for the blocks.)
//
// A block of h 2^L values is collected 2h at a time and ends as one run of h. Each of its levels thins
// h 2^L / (2 h 2^l) times, so that the error of the whole is L/(4h) of its number of values: h = L/(3 eps) makes it
// 3/4 eps, and leaves a quarter for joining summaries. As L grows by one from block to block, the number of blocks
// and of runs is logarithmic.
#pragma once

#include "_math/sort.hpp"
#include "orx/base/bits.hpp"
#include "radix.hpp"
#include "squantiles/state.hpp"

namespace orx::ss::squantiles {

// ---- sizes ----

inline int block_levels(int block) { return block + 1; }

// The values of a run in a block, 0 where there is no counting them.
inline int run_size(int block, double eps) {
  constexpr int least_levels = 4, least_size = 16;
  const int levels = block_levels(block) < least_levels ? least_levels : block_levels(block);
  const double size = levels / (3 * eps);
  if (size >= INT32_MAX / 4) return 0;
  return size <= least_size ? least_size : int(size) + 1;
}

// A power of two, exactly.
inline double weight_of(int level) { return bit_cast<double>(uint64_t(1023 + level) << 52); }

inline double represented(const Run& run) { return run.count * weight_of(run.level); }

inline double total_error(const StreamVariable& variable) {
  double error = 0;
  for (int k = 0; k < variable.run_count; ++k) error += variable.runs[k].error;
  return error;
}

// ---- runs ----

template <class T>
T* values_of(const Run& run) {
  return static_cast<T*>(run.values);
}

// Without memory for the faster sort the values are sorted in place.
template <class T>
void sort_values(T* x, int count) {
  const Block<T> work(count);
  if (work)
    radix_sort(x, work.get(), count);
  else
    sorting::sort(x, count, sorting::Contiguous());
}

// Merges two runs of `count` values and keeps every second one, from the first on. One half of the result is made
// from the front while the other is made from the back: two chains of comparisons that do not wait for each other,
// and neither comes to the end of a or s. The outcome of a comparison is a number that is reckoned with: no branch
// could foretell it.
template <class T>
void merge_and_thin(const T* a, const T* s, int count, T* out) {
  int i = 0, j = 0, end_i = count, end_j = count;  // what is between them is not yet taken
  const auto from_front = [&] {
    const bool take_s = s[j] < a[i];
    const T value = take_s ? s[j] : a[i];
    i += 1 - take_s;
    j += take_s;
    return value;
  };
  const auto from_back = [&] {
    const bool take_a = s[end_j - 1] < a[end_i - 1];
    const T value = take_a ? a[end_i - 1] : s[end_j - 1];
    end_i -= take_a;
    end_j -= 1 - take_a;
    return value;
  };
  for (int k = 0; k < count / 2; ++k) {
    out[k] = from_front();
    from_front();
    from_back();
    out[count - 1 - k] = from_back();
  }
  if (count % 2) out[count / 2] = from_front();
}

inline bool reserve_runs(StreamVariable& variable, int count) {
  if (count <= variable.run_room) return true;
  const int room = count + count / 2 + 6;
  Block<Run> runs(room);
  if (!runs) return false;
  for (int k = 0; k < variable.run_count; ++k) runs[k] = variable.runs[k];
  free_array(variable.runs);
  variable.runs = runs.release();
  variable.run_room = room;
  return true;
}

// ---- adding values ----

// Carries: as long as the last two runs of the block are of one level they become one of the next. False where there
// is no memory; all is whole then, and the next call goes on.
template <class T>
bool settle(StreamVariable& variable) {
  while (variable.run_count - variable.first_run >= 2) {
    Run& a = variable.runs[variable.run_count - 2];
    Run& s = variable.runs[variable.run_count - 1];
    if (a.level != s.level) break;
    Block<T> thinned(a.count);
    if (!thinned) return false;
    merge_and_thin(values_of<T>(a), values_of<T>(s), a.count, thinned.get());
    free_array(a.values);
    free_array(s.values);
    a = {thinned.release(), a.count, a.level + 1, a.error + s.error + 0.5 * weight_of(a.level)};
    --variable.run_count;
  }
  if (variable.run_count > variable.first_run &&
      variable.runs[variable.run_count - 1].level == block_levels(variable.block)) {
    variable.first_run = variable.run_count;
    ++variable.block;
    free_array(variable.raw);
  }
  return true;
}

// The raw values, of which there are enough for two runs, become one that is thinned.
template <class T>
bool close_raw(StreamVariable& variable) {
  const int size = variable.size / 2;
  Block<T> thinned(size);
  if (!thinned || !reserve_runs(variable, variable.run_count + 1)) return false;
  T* const values = static_cast<T*>(variable.raw);
  sort_values(values, variable.size);
  for (int i = 0; i < size; ++i) thinned[i] = values[2 * i];
  const double last = values[variable.size - 1];
  if (variable.run_count == 0 || last > variable.greatest) variable.greatest = last;
  variable.runs[variable.run_count++] = {thinned.release(), size, 1, 0.5};
  variable.fill = 0;
  return true;
}

// False where there is no memory: then some of the values may have been taken.
template <class T>
bool add(StreamVariable& variable, double eps, const T* x, intptr_t stride, int count) {
  for (;;) {
    if (variable.raw && variable.fill == variable.size && !close_raw<T>(variable)) return false;
    if (!settle<T>(variable)) return false;
    if (count == 0) return true;
    if (!variable.raw) {
      variable.size = 2 * run_size(variable.block, eps);
      variable.raw = allocate_array<T>(variable.size);
      if (!variable.raw) return false;
    }
    T* const to = static_cast<T*>(variable.raw) + variable.fill;
    const int room = variable.size - variable.fill, taken = count < room ? count : room;
    for (int i = 0; i < taken; ++i) to[i] = x[i * stride];
    x += taken * stride;
    count -= taken;
    variable.fill += taken;
    variable.observed += taken;
  }
}

// ---- asking for quantiles ----

// Values in order and the levels that they come from.
template <class T>
struct Merged {
  T* values;
  int8_t* levels;

  Merged from(intptr_t place) const { return {values + place, levels + place}; }
};

template <class T>
void merge(const Merged<T>& a, int a_count, const Merged<T>& s, int s_count, const Merged<T>& out) {
  int i = 0, j = 0;
  while (i < a_count && j < s_count) {
    const bool take_s = s.values[j] < a.values[i];
    out.values[i + j] = take_s ? s.values[j] : a.values[i];
    out.levels[i + j] = take_s ? s.levels[j] : a.levels[i];
    i += 1 - take_s;
    j += take_s;
  }
  for (; i < a_count; ++i) out.values[i + s_count] = a.values[i], out.levels[i + s_count] = a.levels[i];
  for (; j < s_count; ++j) out.values[a_count + j] = s.values[j], out.levels[a_count + j] = s.levels[j];
}

// Merges pieces of the given sizes, which lie one after the other, by pairs of neighbours in rounds; the result is
// in `from` or in `other`.
template <class T>
Merged<T> merge_all(const Merged<T>& from, const Merged<T>& other, int* sizes, int count) {
  if (count == 1) return from;
  intptr_t place = 0;
  int merged = 0;
  for (int k = 0; k < count; k += 2) {
    const int a = sizes[k], s = k + 1 < count ? sizes[k + 1] : 0;
    merge(from.from(place), a, from.from(place + a), s, other.from(place));
    sizes[merged++] = a + s;
    place += a + s;
  }
  return merge_all(other, from, sizes, merged);
}

// Room for the first `run_count` runs of a variable and `raw` of its values, merged.
template <class T>
class Merger {
 public:
  bool allocate(const StreamVariable& variable, int run_count, int raw) {
    count_ = raw;
    for (int k = 0; k < run_count; ++k) count_ += variable.runs[k].count;
    return values_.allocate(2 * int64_t(count_)) && levels_.allocate(2 * int64_t(count_)) &&
           sizes_.allocate(run_count + 1);
  }
  void add(const T* x, int size, int level) {
    for (int i = 0; i < size; ++i) values_[place_ + i] = x[i];
    for (int i = 0; i < size; ++i) levels_[place_ + i] = int8_t(level);
    place_ += size;
    sizes_[pieces_++] = size;
  }
  void add_runs(const StreamVariable& variable, int run_count) {
    for (int k = 0; k < run_count; ++k)
      add(values_of<T>(variable.runs[k]), variable.runs[k].count, variable.runs[k].level);
  }
  Merged<T> merge() {
    const Merged<T> first = {values_.get(), levels_.get()};
    return merge_all(first, first.from(count_), sizes_.get(), pieces_);
  }
  intptr_t count() const { return count_; }

 private:
  Block<T> values_;
  Block<int8_t> levels_;
  Block<int> sizes_;
  intptr_t count_ = 0, place_ = 0;
  int pieces_ = 0;
};

// The quantiles of the given orders. With E the error of all runs, the number of values up to one of them is what
// the weights say less E, to E on either side.
template <class T>
int query(const StreamVariable& variable, const T* orders, int order_count, T* results) {
  Merger<T> merger;
  Block<double> up_to;
  if (variable.observed == 0) return KOB_SS_OK;
  if (!merger.allocate(variable, variable.run_count, variable.fill) || !up_to.allocate(merger.count()))
    return KOB_SS_ERROR_MEMORY;
  merger.add_runs(variable, variable.run_count);
  if (variable.fill) {
    sort_values(static_cast<T*>(variable.raw), variable.fill);
    merger.add(static_cast<T*>(variable.raw), variable.fill, 0);
  }
  const Merged<T> all = merger.merge();

  const intptr_t count = merger.count();
  double sum = -total_error(variable);
  for (intptr_t i = 0; i < count; ++i) up_to[i] = sum += weight_of(all.levels[i]);
  T greatest = all.values[count - 1];
  if (variable.run_count && T(variable.greatest) > greatest) greatest = T(variable.greatest);
  for (int k = 0; k < order_count; ++k) {
    const double rank = double(variable.observed) * double(orders[k]);
    intptr_t low = 0, high = count;  // the first value whose number is not below the rank is from low to high
    while (low < high) {
      const intptr_t middle = low + (high - low) / 2;
      if (up_to[middle] < rank)
        low = middle + 1;
      else
        high = middle;
    }
    results[k] = orders[k] == 0 ? all.values[0] : orders[k] == 1 || low == count ? greatest : all.values[low];
  }
  return KOB_SS_OK;
}

}  // namespace orx::ss::squantiles
