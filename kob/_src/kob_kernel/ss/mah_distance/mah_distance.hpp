// Mahalanobis distances sqrt((x - m)' S (x - m)), S being the inverse of a covariance.
#pragma once

#include "_robust/root.hpp"
#include "blas.hpp"
#include "orx/base/memory.hpp"
#include "ss_task.hpp"

namespace orx::ss::mah_distance {

// What observations are measured by: a centre, and the upper triangle, by columns, of an inverse covariance.
template <class T>
struct Metric {
  const T *mean, *inverse;
};

// x - m of `count` observations, one after the other.
template <class T>
using Kernel = void (*)(const Observations<T>& data, int first, int count, const T* mean, T* centred);

template <class T>
void _vMahDistanceRowKernelMethod(const Observations<T>& data, int first, int count, const T* mean,
                                  T* centred) {
  const int p = data.p;
  for (int j = 0; j < p; ++j) {
    const T* const x = data.variable(j) + first;
    const T m = mean[j];
    for (int i = 0; i < count; ++i) centred[intptr_t(i) * p + j] = x[i] - m;
  }
}

template <class T>
void _vMahDistanceColKernelMethod(const Observations<T>& data, int first, int count, const T* mean,
                                  T* centred) {
  const int p = data.p;
  const T* x = data.x + intptr_t(first) * p;
  for (int i = 0; i < count; ++i, x += p, centred += p)
    for (int j = 0; j < p; ++j) centred[j] = x[j] - mean[j];
}

template <class T>
Kernel<T> kernel(const Observations<T>& data) {
  static constexpr Kernel<T> table[2] = {_vMahDistanceRowKernelMethod<T>, _vMahDistanceColKernelMethod<T>};
  return table[!data.rows];
}

// The roots of `together` dot products at a time: the additions of a single one would wait for each other.
template <int together, class T>
void roots_of_products(int p, const T* u, const T* v, T* d) {
  T sum[together] = {};
  for (int j = 0; j < p; ++j)
    for (int i = 0; i < together; ++i) sum[i] += u[intptr_t(i) * p + j] * v[intptr_t(i) * p + j];
  for (int i = 0; i < together; ++i) d[i] = root(sum[i]);
}

// Observations at a time that stay in the nearest cache with their products.
template <class T>
constexpr int block_size(int p) {
  constexpr int bytes = 0x4000, least = 16, block = bytes / int(sizeof(T));
  return block / p > least ? block / p : least;
}
// The work area that such a block needs.
template <class T>
constexpr int64_t work_size(int p) {
  return int64_t(2) * p * block_size<T>(p);
}

// `half` is half the size of the work area: the centred observations, then their products with the inverse.
template <class T>
void distances_by_blocks(const Observations<T>& data, int first, int end, const Metric<T>& metric, T* d,
                         T* centred, int64_t half) {
  constexpr int together = 4;
  const int p = data.p, room = int(half / p), block = room < block_size<T>(p) ? room : block_size<T>(p);
  const Kernel<T> centre = kernel(data);
  T* const product = centred + half;
  for (int count; first < end; first += count) {
    count = end - first < block ? end - first : block;
    centre(data, first, count, metric.mean, centred);
    blas::symm(p, count, metric.inverse, centred, product);
    int i = 0;
    for (; count - i >= together; i += together)
      roots_of_products<together>(p, centred + intptr_t(i) * p, product + intptr_t(i) * p, d + i);
    for (; i < count; ++i)
      roots_of_products<1>(p, centred + intptr_t(i) * p, product + intptr_t(i) * p, d + i);
    d += count;
  }
}

// One at a time, with room for the centred observation.
template <class T>
void distances_one_by_one(const Observations<T>& data, int first, int end, const Metric<T>& metric, T* d,
                          T* centred) {
  const int p = data.p;
  const Kernel<T> centre = kernel(data);
  for (; first < end; ++first) {
    centre(data, first, 1, metric.mean, centred);
    T sum = 0;
    const T* column = metric.inverse;
    for (int j = 0; j < p; ++j, column += p) {
      T above = 0;
      for (int k = 0; k < j; ++k) above += column[k] * centred[k];
      sum += centred[j] * (2 * above + column[j] * centred[j]);
    }
    *d++ = root(sum);
  }
}

template <class T>
void distances_of_one_variable(const Observations<T>& data, int first, int end, const Metric<T>& metric,
                               T* d) {
  const T* const x = data.x + first;
  const T m = metric.mean[0], s = metric.inverse[0];
  for (int i = 0; i < end - first; ++i) d[i] = root((x[i] - m) * s * (x[i] - m));
}

// Distances of the observations from `first` to `end` go to d[0], d[1], ... The work area has room for an observation
// and its product at least.
template <class T>
void distances(const Observations<T>& data, int first, int end, const Metric<T>& metric, T* d, T* work,
               int64_t size) {
  if (data.p == 1) return distances_of_one_variable(data, first, end, metric, d);
  distances_by_blocks(data, first, end, metric, d, work, size / 2);
}

// The same without a work area.
template <class T>
int distances(const Observations<T>& data, int first, int end, const Metric<T>& metric, T* d) {
  if (data.p == 1) {
    distances_of_one_variable(data, first, end, metric, d);
    return KOB_SS_OK;
  }
  const Block<T> centred(data.p);
  if (!centred) return KOB_SS_ERROR_MEMORY;
  distances_one_by_one(data, first, end, metric, d, centred.get());
  return KOB_SS_OK;
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
  if (size / 2 < data.p) return distances(data, int(first), int(end), metric, d);
  distances(data, int(first), int(end), metric, d, reals<T>(task->mahWork), size);
  return KOB_SS_OK;
}

}  // namespace orx::ss::mah_distance
