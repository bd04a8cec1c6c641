// Quicksort and quickselect with a median of three, on arrays with a stride.
//
// The partition has no branch that depends on the data: each element is exchanged with the first of the
// larger ones, and that place moves on by the outcome of the comparison (Lomuto's scheme). It never runs past
// its range, so NaN among the data may spoil the order but nothing else.
#pragma once

#include <cstdint>

namespace orx::sorting {

// The distance between elements: known to the compiler, or given.
struct Contiguous {
  constexpr operator intptr_t() const { return 1; }
};
using Strided = intptr_t;

template <class T, class Stride>
class Range {
 public:
  Range(T* a, Stride stride) : a_(a), stride_(stride) {}
  T& operator[](intptr_t i) const { return a_[i * stride_]; }

  void exchange(intptr_t i, intptr_t j) const {
    const T x = (*this)[i];
    (*this)[i] = (*this)[j];
    (*this)[j] = x;
  }
  void order(intptr_t i, intptr_t j) const {
    if ((*this)[j] < (*this)[i]) exchange(i, j);
  }
  // Brings the elements i to end-1 for which `first(x)` holds to the front; the place after the last of them.
  template <class Predicate>
  intptr_t gather(intptr_t i, intptr_t end, Predicate first) const {
    intptr_t place = i;
    for (; i < end; ++i) {
      const T x = (*this)[i];
      (*this)[i] = (*this)[place];
      (*this)[place] = x;
      place += first(x);
    }
    return place;
  }

 private:
  T* a_;
  Stride stride_;
};

// The middle of a partition: what lies before `first` is not larger, what lies after `last` not smaller than
// the elements from first to last, which are equal.
struct Middle {
  intptr_t first, last;
};

// Partitions of one array. After more of them than a good choice of pivots needs, the candidates for the
// pivot are taken at random.
class Partitioner {
 public:
  explicit Partitioner(intptr_t n) {
    for (; n > 1; n /= 2) patience_ += 4;
  }

  // Elements l to r, three or more.
  template <class T, class Stride>
  Middle operator()(const Range<T, Stride>& a, intptr_t l, intptr_t r) {
    a.exchange(l + 1, l + (r - l) / 2);
    if (--patience_ < 0) {
      const intptr_t candidates[] = {l, l + 1, r};
      for (const intptr_t i : candidates) a.exchange(i, l + next() % uint32_t(r - l + 1));
    }
    a.order(l, r);
    a.order(l, l + 1);
    a.order(l + 1, r);
    const T pivot = a[l + 1];
    const intptr_t middle = a.gather(l + 2, r, [=](T x) { return x < pivot; }) - 1;
    a.exchange(l + 1, middle);
    // Few smaller ones: many may be equal to the pivot, and are gathered behind it.
    if (middle - l > (r - l) / 8) return {middle, middle};
    return {middle, a.gather(middle + 1, r + 1, [=](T x) { return !(pivot < x); }) - 1};
  }

 private:
  uint32_t next() { return (state_ = state_ * 1664525u + 1013904223u) >> 8; }

  int patience_ = 8;
  uint32_t state_ = 1;
};

// Puts the k-th smallest element, counted from 0, of those from l to r at its place, no larger one before it
// and no smaller one after it.
template <class T>
T select(T* array, intptr_t l, intptr_t r, intptr_t k) {
  const Range<T, Contiguous> a(array, {});
  Partitioner partition(r - l + 1);
  while (r - l > 1) {
    const Middle middle = partition(a, l, r);
    if (k < middle.first)
      r = middle.first - 1;
    else if (k > middle.last)
      l = middle.last + 1;
    else
      return a[k];
  }
  if (l < r) a.order(l, r);
  return a[k];
}

template <class T, class Stride>
void insertion_sort(const Range<T, Stride>& a, intptr_t l, intptr_t r) {
  for (intptr_t i = l + 1; i <= r; ++i) {
    const T x = a[i];
    intptr_t j = i;
    for (; j > l && x < a[j - 1]; --j) a[j] = a[j - 1];
    a[j] = x;
  }
}

// The larger part waits on a stack while the smaller one is sorted.
template <class T, class Stride>
void sort(T* array, intptr_t n, Stride stride) {
  constexpr intptr_t insertion_limit = 7;
  const Range<T, Stride> a(array, stride);
  Partitioner partition(n);
  struct {
    intptr_t l, r;
  } waiting[8 * sizeof(n)], part = {0, n - 1};
  int count = 0;
  for (;;) {
    if (part.r - part.l + 1 < insertion_limit) {
      insertion_sort(a, part.l, part.r);
      if (count == 0) return;
      part = waiting[--count];
      continue;
    }
    const Middle middle = partition(a, part.l, part.r);
    const bool left_is_larger = middle.first - part.l > part.r - middle.last;
    const decltype(part) left = {part.l, middle.first - 1}, right = {middle.last + 1, part.r};
    waiting[count++] = left_is_larger ? left : right;
    part = left_is_larger ? right : left;
  }
}

}  // namespace orx::sorting
