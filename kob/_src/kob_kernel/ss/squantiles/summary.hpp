// Summaries of ordered data: some of the values, each with bounds of its rank.
#pragma once

#include "../../_service/ss_task.hpp"

namespace orx::ss::squantiles {

// Values in order, and bounds of their ranks, the first rank being 1. The bounds have a place before the
// first and one after the last element, which stand for the other side of a merge where it has no element: 0,
// and one more than the last.
template <class T>
struct Summary {
  static constexpr int extra = 2;  // places beyond the elements

  T* values;
  int *r_min, *r_max;

  // In rows of which `places` are free from number `at` on.
  static Summary in(T* values, int* r_min, int* r_max, intptr_t at) {
    return {values + at + 1, r_min + at + 1, r_max + at + 1};
  }
  void set(int i, T value, int low, int high) const {
    values[i] = value;
    r_min[i] = low;
    r_max[i] = high;
  }
  void close(int count) const {
    r_min[-1] = 0;
    r_max[count] = r_max[count - 1] + 1;
  }
};

template <class T>
void copy(const Summary<T>& from, int count, const Summary<T>& to) {
  for (int i = 0; i < count; ++i) to.values[i] = from.values[i];
  for (int i = 0; i < count; ++i) to.r_min[i] = from.r_min[i];
  for (int i = 0; i < count; ++i) to.r_max[i] = from.r_max[i];
  to.close(count);
}

// Merges a and s, neither empty, and keeps every `keep`-th element from the first on; returns how many those
// are. The least rank of an element grows by that of the last one before it on the other side, its greatest
// by that of the next one there, less 1. The outcome of a comparison is a number that is reckoned with: no
// branch could foretell it.
template <int keep, class T>
int merge(const Summary<T>& a, int a_count, const Summary<T>& s, int s_count, const Summary<T>& out) {
  int i = 0, j = 0, kept = 0, wait = 0;
  while (i < a_count && j < s_count) {
    const T a_value = a.values[i], s_value = s.values[j];
    const int take_s = s_value < a_value;
    if (wait == 0) {
      out.set(kept++, s_value < a_value ? s_value : a_value, a.r_min[i - take_s] + s.r_min[j - 1 + take_s],
              a.r_max[i] + s.r_max[j] - 1);
      wait = keep;
    }
    --wait;
    i += 1 - take_s;
    j += take_s;
  }
  const bool a_left = i < a_count;
  const Summary<T>&rest = a_left ? a : s, &done = a_left ? s : a;
  const int rest_count = a_left ? a_count : s_count, done_count = a_left ? s_count : a_count;
  for (int k = (a_left ? i : j) + wait; k < rest_count; k += keep)
    out.set(kept++, rest.values[k], rest.r_min[k] + done.r_min[done_count - 1],
            rest.r_max[k] + done.r_max[done_count] - 1);
  out.close(kept);
  return kept;
}

}  // namespace orx::ss::squantiles
