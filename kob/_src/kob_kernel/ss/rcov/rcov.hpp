// Robust mean and covariance: the S-estimate of the translated biweight (Rocke 1996), from an OGK start.
#pragma once

#include "_robust/checks.hpp"
#include "mah_distance/mah_distance.hpp"
#include "matrix.hpp"
#include "orx/base/default_arithmetic.hpp"
#include "rcov/ogk.hpp"

namespace orx::ss::rcov {

template <class T>
int check(const SSTask* task, unsigned method) {
  if (const int status = check_task<T>(task)) return status;
  if (const int status = check_dimension(task)) return status;
  if (!task->observationCount) return KOB_SS_ERROR_OBSERVATION_COUNT;
  if (value(task, task->observationCount) <= 2 * value(task, task->dimension) || !task->observations)
    return KOB_SS_ERROR_OBSERVATIONS;
  if (const int status = check_count(task, task->observationCount, KOB_SS_ERROR_OBSERVATION_COUNT))
    return status;
  if (!task->obsStorage) return KOB_SS_ERROR_STORAGE_ABSENT;
  if (!is_observation_storage(task, task->obsStorage)) return KOB_SS_ERROR_STORAGE;
  if (!task->robustMean) return KOB_SS_ERROR_ROBUST_MEAN;
  if (!task->robustCov) return KOB_SS_ERROR_ROBUST_COVARIANCE;
  if (const int status = check_matrix_storage(task, task->robustCovStorage)) return status;
  return method & KOB_SS_TBS ? KOB_SS_OK : KOB_SS_ERROR_METHOD;
}

struct Parameters {
  double breakdown, rejection = 0.001, accuracy = 0.001;
  int rounds = 100;

  Parameters(int p, int n) : breakdown(0.5 * (n - p) / n) {}

  template <class T>
  void read(const T* given) {
    if (given[0] > 0 && given[0] < breakdown) breakdown = double(given[0]);
    if (given[1] > 0 && given[1] < 1) rejection = double(given[1]);
    if (given[2] > 0) accuracy = double(given[2]);
    if (given[3] >= 0) rounds = given[3] < 1e9 ? int(given[3]) : 1000000000;
  }
};

template <class T>
struct Tbs {
  SSTask* task;
  Observations<T> data;
  const ThreadingServices* threading;
  int workers;
  T M = 0, c = 0;
  Block<T> vectors;  // distances, the same in another order, weights, those of the round before
  Block<T> mean, covariance, inverse, work;

  Tbs(SSTask* t, const ThreadingServices* services)
      : task(t),
        data(t),
        threading(threading_or_serial(services)),
        workers(int64_t(data.n) * data.p < 10000 ? 1 : threading->maxThreads()) {}

  T* distances() const { return vectors.get(); }
  T* area() const { return vectors.get() + data.n; }
  T* weights() const { return area() + data.n; }
  T* earlier_weights() const { return weights() + data.n; }
  int64_t area_size() const { return mah_distance::work_size<T>(data.p); }

  bool allocate() {
    const int64_t p = data.p;
    return vectors.allocate(4 * int64_t(data.n)) && mean.allocate(p) && covariance.allocate(p * p) &&
           work.allocate(workers * area_size());
  }

  T weight(T d) const {
    if (d < M) return 1;
    if (!(d <= M + c) || !(c > 0)) return 0;
    const T z = (d - M) / c, u = 1 - z * z;
    return u * u;
  }
};

template <class T>
void _vSSTBSMahThreader(int t, int, int, void* arguments) {
  const Tbs<T>& s = *static_cast<const Tbs<T>*>(arguments);
  const int share = s.data.n / s.workers, first = t * share,
            end = t == s.workers - 1 ? s.data.n : first + share;
  mah_distance::distances<T>(s.data, first, end, {s.mean.get(), s.inverse.get()}, s.distances() + first,
                             s.work.get() + t * s.area_size());
}

// Gives all observations the weights of their distances, in a unit in which the k-th smallest is `wanted`. The sum of
// the weighted squares of the distances, or what is not above 0 where no observation is left.
template <class T>
double reweigh(Tbs<T>& s, int k, double wanted) {
  const int n = s.data.n;
  T *const d = s.distances(), *const w = s.weights();
  for (int i = 0; i < n; ++i) s.area()[i] = d[i];
  const T scale = T(wanted / double(order_statistic(s.area(), n, k)));
  double sum = 0, squares = 0;
  for (int i = 0; i < n; ++i) {
    d[i] *= scale;
    w[i] = s.weight(d[i]);
    sum += double(w[i]);
    squares += double(w[i] * d[i] * d[i]);
  }
  return sum > 0 ? squares : 0;
}

template <class T>
int iterate(Tbs<T>& s, const Parameters& parameters) {
  const int n = s.data.n, p = s.data.p, k = (p + 1 + n) / 2;
  const double wanted = in_default_arithmetic(
      [=] { return double(extended::root(extended::chi2_quantile(p, k / (n + extended::Real(1))))); });
  T *const w = s.weights(), *const earlier = s.earlier_weights();
  for (int i = 0; i < n; ++i) w[i] = 1;
  const double enough = parameters.accuracy * parameters.accuracy;
  double change = 2 * enough;
  for (int round = 0; change > enough && round < parameters.rounds; ++round) {
    for (int i = 0; i < n; ++i) earlier[i] = w[i];
    if (const int status = invert_covariance(p, s.covariance.get(), s.inverse)) return status;
    s.threading->parallelRun(s.workers, &s, _vSSTBSMahThreader<T>);
    const double squares = reweigh(s, k - 1, wanted);
    if (!(squares > 0)) return KOB_SS_ERROR_NO_SUBSET;
    WeightedCovariance<T> moments;
    if (const int status = moments.compute(s.task, w, s.mean.get(), s.covariance.get(), s.threading))
      return status;
    const T scale = T(p * double(moments.freedom()) / squares);
    for (intptr_t l = 0; l < intptr_t(p) * p; ++l) s.covariance[l] *= scale;
    change = 0;
    for (int i = 0; i < n; ++i) change += double((w[i] - earlier[i]) * (w[i] - earlier[i]));
  }
  return KOB_SS_OK;
}

template <class T>
int compute(SSTask* task, unsigned method, const ThreadingServices* threading) {
  if (const int status = check<T>(task, method)) return status;
  Tbs<T> s(task, threading);
  const int n = s.data.n, p = s.data.p;
  Parameters parameters(p, n);
  if (const T* given = given_parameters<T>(task, task->robustParamCount, task->robustParams, 4))
    parameters.read(given);
  // No order statistic, and no eigenvalue, is worth having of what is not a number.
  if (!all_finite(s.data.x, intptr_t(n) * p)) return KOB_SS_ERROR_ROBUST_EIGEN;
  if (!s.allocate()) return KOB_SS_ERROR_MEMORY;
  const Biweight biweight =
      in_default_arithmetic([&] { return _vSSInitTBSMethod(p, parameters.breakdown, parameters.rejection); });
  s.M = T(biweight.M);
  s.c = T(biweight.c);
  if (const int status = _vSSOGK(task, s.threading, s.weights(), s.mean.get(), s.covariance.get()))
    return status;
  if (const int status = iterate(s, parameters)) return status;
  const SymmetricMatrix<T> result(task->robustCov, task->robustCovStorage, p);
  for (int j = 0; j < p; ++j) {
    reals<T>(task->robustMean)[j] = s.mean[j];
    for (int i = 0; i <= j; ++i) result.set(i, j, s.covariance[intptr_t(j) * p + i]);
  }
  return KOB_SS_OK;
}

}  // namespace orx::ss::rcov
