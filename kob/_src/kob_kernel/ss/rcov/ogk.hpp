// A first robust estimate: the orthogonalized Gnanadesikan-Kettenring estimate of Maronna and Zamar (2002), with one step of
// reweighting.
#pragma once

#include <algorithm>

#include "_robust/inner_task.hpp"
#include "_robust/rank.hpp"
#include "orx/base/default_arithmetic.hpp"
#include "rcov/translated_biweight.hpp"
#include "rcov/two_step.hpp"

namespace orx::ss::rcov {

template <class T>
struct Ogk {
  Observations<T> data;
  const ThreadingServices* threading;
  int workers;
  Block<T> areas;     // three vectors of n numbers for each worker
  Block<T> matrices;  // what follows
  T *reciprocals = nullptr, *packed = nullptr, *vectors = nullptr,
    *lapack = nullptr;  // of p, p(p + 1)/2, p p and (p + 6)p + 1 elements
  Block<int> lapack_integers;

  Ogk(const SSTask* task, const ThreadingServices* services) : data(task), threading(services) {
    // The vectors of all workers take some ten million bytes, unless one worker's take more.
    constexpr int64_t affordable = 1250000;
    const int64_t most = std::max<int64_t>(1, affordable / (3 * int64_t(data.n)));
    workers = int(std::min<int64_t>(threading->maxThreads(), most));
  }

  int lapack_size() const { return (data.p + 6) * data.p + 1; }
  T* area(int worker, int k) const { return areas.get() + (3 * intptr_t(worker) + k) * data.n; }

  bool allocate() {
    const int64_t p = data.p, triangle = p * (p + 1) / 2;
    if (!areas.allocate(3 * int64_t(workers) * data.n) || !lapack_integers.allocate(5 * p + 3) ||
        !matrices.allocate(2 * p + triangle + p * p + lapack_size()))
      return false;
    reciprocals = matrices.get();
    packed = reciprocals + p;
    vectors = packed + triangle;
    lapack = vectors + p * p;
    return true;
  }
  T* eigenvalues() const { return lapack + lapack_size(); }
};

// ---- scales of the variables ----

template <class T>
void _vSSOGKThreader(int j, int t, int, void* arguments) {
  const Ogk<T>& g = *static_cast<const Ogk<T>*>(arguments);
  T* const x = g.area(t, 0);
  quantiles::copy(g.data.variable(j), g.data.stride(), x, 1, g.data.n);
  const double scale = __builtin_sqrt(two_step(x, g.data.n, g.area(t, 1)).variance);
  g.reciprocals[j] = scale > 0 ? T(1 / scale) : T(0);
}

// ---- correlations ----

// The variances of sum and difference of two standardized variables differ by four times their correlation
// (Gnanadesikan and Kettenring 1972).
template <class T>
void _vSSOGKCorThreader(int pair, int t, int, void* arguments) {
  const Ogk<T>& g = *static_cast<const Ogk<T>*>(arguments);
  const int n = g.data.n, p = g.data.p;
  int i = 0, j = pair + 1;
  for (; j >= p; ++i) j -= p - 2 - i;
  const T *const x = g.data.variable(i), *const z = g.data.variable(j);
  const intptr_t stride = g.data.stride();
  T* const y = g.area(t, 0);
  double variance[2];
  for (const int sign : {1, -1}) {
    const T a = g.reciprocals[i], b = T(sign) * g.reciprocals[j];
    for (int l = 0; l < n; ++l) y[l] = a * x[l * stride] + b * z[l * stride];
    variance[sign < 0] = two_step(y, n, g.area(t, 1)).variance;
  }
  g.packed[intptr_t(i) * (2 * p - i - 1) / 2 + j] = T((variance[0] - variance[1]) * 0.25);
}

template <class T>
void correlate(Ogk<T>& g) {
  const int p = g.data.p;
  for (int i = 0; i < p; ++i) g.packed[intptr_t(i) * (2 * p - i - 1) / 2 + i] = 1;
  if (p > 1) g.threading->parallelFor(p * (p - 1) / 2, g.workers, &g, _vSSOGKCorThreader<T>);
}

// Eigenvectors of the correlations, in columns, in units of the variables.
template <class T>
int orthogonalize(Ogk<T>& g) {
  const int p = g.data.p;
  if (!all_finite(g.packed, intptr_t(p) * (p + 1) / 2)) return KOB_SS_ERROR_ROBUST_EIGEN;
  if (blas::spevd(p, g.packed, g.eigenvalues(), g.vectors, g.lapack, g.lapack_size(), g.lapack_integers.get(),
                  5 * p + 3))
    return KOB_SS_ERROR_ROBUST_EIGEN;
  for (int c = 0; c < p; ++c)
    for (int r = 0; r < p; ++r) g.vectors[intptr_t(c) * p + r] *= g.reciprocals[r];
  return KOB_SS_OK;
}

// ---- distances ----

// y = Z x for one column Z, over all observations.
template <class T>
void _vSSComputeOGKMethodRow(const Observations<T>& data, const T* z, T* y) {
  constexpr int block = 1024;
  for (int first = 0; first < data.n; first += block) {
    const int count = std::min(block, data.n - first);
    T* __restrict to = y + first;
    for (int i = 0; i < count; ++i) to[i] = 0;
    for (int r = 0; r < data.p; ++r) {
      const T* const x = data.variable(r) + first;
      const T factor = z[r];
      for (int i = 0; i < count; ++i) to[i] += factor * x[i];
    }
  }
}
template <class T>
void _vSSComputeOGKMethodCol(const Observations<T>& data, const T* z, T* y) {
  const T* x = data.x;
  for (int i = 0; i < data.n; ++i, x += data.p) {
    T sum = 0;
    for (int r = 0; r < data.p; ++r) sum += z[r] * x[r];
    y[i] = sum;
  }
}
template <class T>
constexpr void (*_vSSComputeOGKMethod[2])(const Observations<T>& data, const T* z, T* y) = {
    _vSSComputeOGKMethodRow<T>, _vSSComputeOGKMethodCol<T>};

// Worker t takes the coordinates t, t + workers and so on, and sums its part of the squared distances: the same part
// each time, so that results do not hang on timing.
template <class T>
void _vSSOGKMahThreader(int t, int, int, void* arguments) {
  const Ogk<T>& g = *static_cast<const Ogk<T>*>(arguments);
  const int n = g.data.n, p = g.data.p;
  T *const squares = g.area(t, 0), *const y = g.area(t, 1);
  for (int i = 0; i < n; ++i) squares[i] = 0;
  for (int c = t; c < p; c += g.workers) {
    _vSSComputeOGKMethod<T>[!g.data.rows](g.data, g.vectors + intptr_t(c) * p, y);
    const TwoStep estimate = two_step(y, n, g.area(t, 2));
    if (!(estimate.variance > 0)) continue;
    const T location = T(estimate.location), reciprocal = T(1 / __builtin_sqrt(estimate.variance));
    for (int i = 0; i < n; ++i) {
      const T distance = (y[i] - location) * reciprocal;
      squares[i] += distance * distance;
    }
  }
}

// The sum of the workers' squared distances is worker 0's.
template <class T>
T* squared_distances(Ogk<T>& g) {
  g.threading->parallelRun(g.workers, &g, _vSSOGKMahThreader<T>);
  T* const sum = g.area(0, 0);
  for (int t = 1; t < g.workers; ++t)
    for (int i = 0; i < g.data.n; ++i) sum[i] += g.area(t, 0)[i];
  return sum;
}

// ---- the estimate ----

// Mean and covariance of the observations whose distances are not beyond the quantile 0.9, where the median is the
// quantile 0.5.
template <class T>
int _vSSOGK(const SSTask* task, const ThreadingServices* threading, T* weights, T* mean, T* cov) {
  Ogk<T> g(task, threading);
  if (!g.allocate()) return KOB_SS_ERROR_MEMORY;
  const int n = g.data.n, p = g.data.p;
  threading->parallelFor(p, g.workers, &g, _vSSOGKThreader<T>);
  correlate(g);
  if (const int status = orthogonalize(g)) return status;
  const T* const squares = squared_distances(g);
  T* const copy = g.area(0, 1);
  for (int i = 0; i < n; ++i) copy[i] = squares[i];
  const T ratio = in_default_arithmetic(
      [=] { return T(extended::chi2_upper_quantile(p, 0.1L) / extended::chi2_quantile(p, 0.5L)); });
  const T threshold = ratio * median(copy, n);
  for (int i = 0; i < n; ++i) weights[i] = T(threshold > squares[i]);
  WeightedCovariance<T> moments;
  if (const int status = moments.compute(task, weights, mean, cov, threading)) return status;
  if (!(moments.W > 0)) return KOB_SS_ERROR_NO_SUBSET;
  const T scale = moments.freedom() / moments.W;
  for (intptr_t k = 0; k < intptr_t(p) * p; ++k) cov[k] *= scale;
  return KOB_SS_OK;
}

}  // namespace orx::ss::rcov
