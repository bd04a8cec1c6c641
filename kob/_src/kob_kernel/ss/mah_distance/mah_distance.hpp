// Mahalanobis distances sqrt((x - m)' S (x - m)), S being the inverse of a covariance.
//
// Some observations at a time are centred and turned, so that those of a variable lie side by side: then vectors of
// observations go through the triangle of S, of which each element outside the diagonal counts twice.
#pragma once

#include "_robust/root.hpp"
#include "orx/base/memory.hpp"
#include "orx/base/simd/memory.hpp"
#include "ss_task.hpp"

namespace orx::ss::mah_distance {

// What observations are measured by: a centre, and the upper triangle, by columns, of an inverse covariance; none
// stands for the unit matrix.
template <class T>
struct Metric {
  const T *mean, *inverse;
};

template <class T>
using Vector = simd::VectorOf<T, 32>;
template <class T>
constexpr int kLanes = 32 / int(sizeof(T));
// Observations that go together: two vectors.
template <class T>
constexpr int kGroup = 2 * kLanes<T>;
// The work area that they need.
template <class T>
constexpr int64_t work_size(int p) {
  return int64_t(p) * kGroup<T>;
}

// x - m of `count` observations, kGroup at most, variable by variable. What is left of a group is 0.
template <class T>
using Kernel = void (*)(const Observations<T>& data, int first, int count, const T* mean, T* centred);

template <class T>
void _vMahDistanceRowKernelMethod(const Observations<T>& data, int first, int count, const T* mean,
                                  T* centred) {
  constexpr int group = kGroup<T>;
  for (int j = 0; j < data.p; ++j, centred += group) {
    const T* const x = data.variable(j) + first;
    const T m = mean[j];
    if (count == group) {
      for (int i = 0; i < group; ++i) centred[i] = x[i] - m;
    } else {
      for (int i = 0; i < group; ++i) centred[i] = i < count ? x[i] - m : T(0);
    }
  }
}

template <class T>
void _vMahDistanceColKernelMethod(const Observations<T>& data, int first, int count, const T* mean,
                                  T* centred) {
  constexpr int group = kGroup<T>;
  const int p = data.p;
  const T* x = data.x + intptr_t(first) * p;
  for (int i = 0; i < group; ++i, x += p)
    for (int j = 0; j < p; ++j) centred[j * group + i] = i < count ? x[j] - mean[j] : T(0);
}

template <class T>
Kernel<T> kernel(const Observations<T>& data) {
  static constexpr Kernel<T> table[2] = {_vMahDistanceRowKernelMethod<T>, _vMahDistanceColKernelMethod<T>};
  return table[!data.rows];
}

// The observations of a group, of one variable or of a sum.
template <class T>
struct Group {
  Vector<T> v[2];

  static Group load(const T* x) { return {{simd::load<Vector<T>>(x), simd::load<Vector<T>>(x + kLanes<T>)}}; }
  void add(T factor, const Group& x) {
    const Vector<T> f = factor - Vector<T>{};
    v[0] += f * x.v[0];
    v[1] += f * x.v[1];
  }
  void add(const Group& x) {
    v[0] += x.v[0];
    v[1] += x.v[1];
  }
  void add(const Group& x, const Group& y) {
    v[0] += x.v[0] * y.v[0];
    v[1] += x.v[1] * y.v[1];
  }
};

// (x - m)' S (x - m) of a group. Two columns of S go together, so that additions do not wait for each other.
template <class T>
Group<T> quadratic_forms(int p, const T* inverse, const T* centred) {
  constexpr int group = kGroup<T>;
  Group<T> sum = {};
  int j = 0;
  for (; j + 1 < p; j += 2) {
    const T *const a = inverse + intptr_t(j) * p, *const b = a + p;
    Group<T> of_a = {}, of_b = {};
    for (int k = 0; k < j; ++k) {
      const Group<T> x = Group<T>::load(centred + k * group);
      of_a.add(a[k], x);
      of_b.add(b[k], x);
    }
    const Group<T> x = Group<T>::load(centred + j * group), y = Group<T>::load(centred + (j + 1) * group);
    of_b.add(b[j], x);
    of_a.add(of_a);
    of_b.add(of_b);
    of_a.add(a[j], x);
    of_b.add(b[j + 1], y);
    sum.add(of_a, x);
    sum.add(of_b, y);
  }
  if (j == p) return sum;
  const T* const a = inverse + intptr_t(j) * p;
  Group<T> of_a = {};
  for (int k = 0; k < j; ++k) of_a.add(a[k], Group<T>::load(centred + k * group));
  const Group<T> x = Group<T>::load(centred + j * group);
  of_a.add(of_a);
  of_a.add(a[j], x);
  sum.add(of_a, x);
  return sum;
}

template <class T>
Group<T> squares(int p, const T* centred) {
  Group<T> sum = {};
  for (int j = 0; j < p; ++j) {
    const Group<T> x = Group<T>::load(centred + j * kGroup<T>);
    sum.add(x, x);
  }
  return sum;
}

// Distances of the observations from `first` to `end` go to d[0], d[1], ...
template <class T>
void distances(const Observations<T>& data, int first, int end, const Metric<T>& metric, T* d, T* work) {
  constexpr int group = kGroup<T>;
  const Kernel<T> centre = kernel(data);
  for (; first < end; first += group, d += group) {
    const int count = end - first < group ? end - first : group;
    centre(data, first, count, metric.mean, work);
    const Group<T> sums =
        metric.inverse ? quadratic_forms(data.p, metric.inverse, work) : squares(data.p, work);
    T roots[group];
    for (int i = 0; i < group; ++i) roots[i] = root(sums.v[i / kLanes<T>][i % kLanes<T>]);
    for (int i = 0; i < count; ++i) d[i] = roots[i];
  }
}

template <class T>
int compute(SSTask* task) {
  if (const int status = check_data<T>(task)) return status;
  const Observations<T> data(task);
  const int64_t first = task->mahFirst ? value(task, task->mahFirst) : 0;
  const int64_t end = task->mahEnd ? value(task, task->mahEnd) : data.n;
  if (!task->mahMean || !task->mahInvCov || !task->mahDistances || first < 0 || first > end || end > data.n)
    return KOB_SS_ERROR_MAHALANOBIS;
  const Metric<T> metric = {reals<T>(task->mahMean), reals<T>(task->mahInvCov)};
  T* const d = reals<T>(task->mahDistances);
  const int64_t size = task->mahWork && task->mahWorkSize ? value(task, task->mahWorkSize) : 0;
  Block<T> own;
  const bool suffices = size >= work_size<T>(data.p);
  if (!suffices && !own.allocate(work_size<T>(data.p))) return KOB_SS_ERROR_MEMORY;
  distances(data, int(first), int(end), metric, d, suffices ? reals<T>(task->mahWork) : own.get());
  return KOB_SS_OK;
}

}  // namespace orx::ss::mah_distance
