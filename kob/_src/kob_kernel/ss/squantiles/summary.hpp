// Summaries of ordered data: some of the values, each with bounds of its rank.
#pragma once

#include "ss_task.hpp"

namespace orx::ss::squantiles {

// Values in order, and bounds of their ranks, the first rank being 1. The bounds have a place before the
// first and one after the last element, which stand for the other side of a merge where it has no element: 0,
// and one more than the last.
template <class T>
struct Summary {
  static constexpr int kExtra = 2;  // places beyond the elements

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

// Puts the next element of a merge of a and s at `out[k]`: s[j] or a[i], with i and j elements before it. Its
// least rank grows by that of the last one before it on the other side, its greatest by that of the next one
// there, less 1.
template <class T>
__attribute__((always_inline)) inline void put(T value, const Summary<T>& a, int i, const Summary<T>& s,
                                               int j, bool from_s, const Summary<T>& out, int k) {
  out.set(k, value, a.r_min[i - from_s] + s.r_min[j - 1 + from_s], a.r_max[i] + s.r_max[j] - 1);
}

// Merges a and s, neither empty; of equal elements those of a come first. The outcome of a comparison is a
// number that is reckoned with: no branch could foretell it.
template <class T>
void merge(const Summary<T>& a, int a_count, const Summary<T>& s, int s_count, const Summary<T>& out) {
  int i = 0, j = 0;
  while (i < a_count && j < s_count) {
    const T a_value = a.values[i], s_value = s.values[j];
    const int take_s = s_value < a_value;
    put(s_value < a_value ? s_value : a_value, a, i, s, j, take_s, out, i + j);
    i += 1 - take_s;
    j += take_s;
  }
  for (; i < a_count; ++i) put(a.values[i], a, i, s, s_count, false, out, i + s_count);
  for (; j < s_count; ++j) put(s.values[j], a, a_count, s, j, true, out, a_count + j);
  out.close(a_count + s_count);
}

// The same for two summaries of `half` elements, keeping every second element of the merged ones. One half
// of the result is made from the front while the other is made from the back: two chains of comparisons that
// do not wait for each other, and neither comes to the end of a or s.
template <class T>
void merge_and_thin(const Summary<T>& a, const Summary<T>& s, int half, const Summary<T>& out) {
  int i = 0, j = 0, end_i = half, end_j = half;  // what is between them is not yet taken
  const auto from_front = [&](auto use) {
    const T a_value = a.values[i], s_value = s.values[j];
    const int take_s = s_value < a_value;
    use(s_value < a_value ? s_value : a_value, take_s);
    i += 1 - take_s;
    j += take_s;
  };
  const auto from_back = [&](auto use) {
    const T a_value = a.values[end_i - 1], s_value = s.values[end_j - 1];
    const int take_a = s_value < a_value;
    end_i -= take_a;
    end_j -= 1 - take_a;
    use(s_value < a_value ? a_value : s_value, 1 - take_a);
  };
  const auto skip = [](T, int) {};
  for (int k = 0; k < half / 2; ++k) {
    from_front([&](T value, int from_s) { put(value, a, i, s, j, from_s, out, k); });
    from_front(skip);
    from_back(skip);
    from_back([&](T value, int from_s) { put(value, a, end_i, s, end_j, from_s, out, half - 1 - k); });
  }
  if (half % 2) from_front([&](T value, int from_s) { put(value, a, i, s, j, from_s, out, half / 2); });
  out.close(half);
}

}  // namespace orx::ss::squantiles
