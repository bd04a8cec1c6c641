// Means and covariances of groups of observations, and the pooled ones.
#pragma once

#include <type_traits>

#include "matrix.hpp"
#include "orx/base/memory.hpp"
#include "orx/base/threading.hpp"
#include "ss_task.hpp"

namespace orx::ss::pldcov {

// The sums of a group, over the q wanted variables: W and W2, the means or sums, the lower triangle of
// products by rows. They run in double precision whatever the data are.
struct Sums {
  double *weights, *mean, *products;
  int q;

  Sums(double* memory, int count) : weights(memory), mean(memory + 2), products(mean + count), q(count) {}
  static int64_t size(int q) { return 2 + int64_t(q) * (q + 1); }

  double W() const { return weights[0]; }
  double freedom() const { return (weights[0] * weights[0] - weights[1]) / weights[0]; }
  double* row(int j) const { return products + intptr_t(j) * q; }
  void clear() const {
    for (int64_t i = 0; i < size(q); ++i) weights[i] = 0;
  }
  void add_weight(double w) const {
    weights[0] += w;
    weights[1] += w * w;
  }
};

template <class T>
struct Computation {
  explicit Computation(const SSTask* t)
      : task(t), data(t), selection(t), weights(reals<T>(t->weights)), groups(t, t->groupIndices) {}

  const SSTask* task;
  Observations<T> data;
  Selection selection;
  const T* weights;
  Integers groups;
  unsigned estimates = 0;
  const ThreadingServices* threading = nullptr;
  int q = 0;                 // wanted variables
  int* variables = nullptr;  // their numbers
  double* sums = nullptr;    // a set for each worker
  double* values = nullptr;  // an observation, for each worker
  Sums pooled{nullptr, 0};
  double pooled_freedom = 0;

  Sums worker_sums(int t) const { return {sums + t * intptr_t(Sums::size(q)), q}; }
  double* worker_values(int t) const { return values + intptr_t(t) * q; }
};

// ---- the sums of one group ----

template <class T>
struct KernelArgs {
  const Computation<T>* computation;
  int group;
  double* values;  // q numbers
  Sums sums;
};

// Calls f(values, weight) for each observation of the group.
template <bool indexed, bool weighted, bool rows, class T, class F>
void each_observation(const KernelArgs<T>& args, F f) {
  const Computation<T>& c = *args.computation;
  const intptr_t from_variable = rows ? c.data.n : 1, from_observation = rows ? 1 : c.data.p;
  for (int i = 0; i < c.data.n; ++i) {
    if (c.groups[i] != args.group) continue;
    const T* x = c.data.x + i * from_observation;
    for (int j = 0; j < c.q; ++j) args.values[j] = x[(indexed ? c.variables[j] : j) * from_variable];
    f(args.values, weighted ? double(c.weights[i]) : 1.0);
  }
}

// One pass about the running mean (West 1979), from the first observation of a weight other than 0 on.
template <bool indexed, bool weighted, bool rows, class T>
void one_pass(const KernelArgs<T>& args) {
  const Sums& s = args.sums;
  s.clear();
  each_observation<indexed, weighted, rows>(args, [&](double* x, double w) {
    const double W = s.W();
    if (W == 0 && w == 0) return;
    const double r = w / (W + w), t = W * r;
    for (int j = 0; j < s.q; ++j) x[j] -= s.mean[j];
    for (int j = 0; j < s.q; ++j) {
      const double td = t * x[j];
      double* row = s.row(j);
      for (int k = 0; k <= j; ++k) row[k] += td * x[k];
    }
    for (int j = 0; j < s.q; ++j) s.mean[j] += r * x[j];
    s.add_weight(w);
  });
}

// Sums about 0, of which the means are taken off at the end: faster, and exact enough for fewer observations.
template <bool indexed, bool weighted, bool rows, class T>
void two_steps(const KernelArgs<T>& args) {
  const Sums& s = args.sums;
  s.clear();
  each_observation<indexed, weighted, rows>(args, [&](const double* x, double w) {
    for (int j = 0; j < s.q; ++j) {
      const double wx = weighted ? w * x[j] : x[j];
      s.mean[j] += wx;
      double* row = s.row(j);
      for (int k = 0; k <= j; ++k) row[k] += wx * x[k];
    }
    s.add_weight(w);
  });
  const double share = 1 / s.W();
  for (int j = 0; j < s.q; ++j)
    for (int k = 0; k <= j; ++k) s.row(j)[k] -= share * s.mean[j] * s.mean[k];
  for (int j = 0; j < s.q; ++j) s.mean[j] *= share;
}

template <class T>
using Kernel = void (*)(const KernelArgs<T>&);

// The one-pass kernels by indices (none, given), weights (none, given) and storage (rows, columns).
template <class T>
struct KernelTable {
  Kernel<T> by_index_weight_storage[2][2][2];
};

// Calls f with the three choices as types.
template <class T, class F>
void dispatch(const Computation<T>& c, F f) {
  constexpr std::true_type yes;
  constexpr std::false_type no;
  const auto storage = [&](auto indexed, auto weighted) {
    c.data.rows ? f(indexed, weighted, yes) : f(indexed, weighted, no);
  };
  const auto weight = [&](auto indexed) { c.weights ? storage(indexed, yes) : storage(indexed, no); };
  c.selection.all() ? weight(no) : weight(yes);
}

template <class T>
void _vSSPldCovCalculateGroup(const KernelArgs<T>& args, const KernelTable<T>& table) {
  constexpr int most_for_two_steps = 200000;
  const Computation<T>& c = *args.computation;
  dispatch(c, [&](auto indexed, auto weighted, auto rows) {
    constexpr bool i = decltype(indexed)::value, w = decltype(weighted)::value, r = decltype(rows)::value;
    if (c.data.n <= most_for_two_steps)
      two_steps<i, w, r>(args);
    else if (const Kernel<T> kernel = table.by_index_weight_storage[i][w][!r])
      kernel(args);
    else
      one_pass<i, w, r>(args);
  });
}

// ---- results ----

template <class T>
void write(const Computation<T>& c, const Sums& s, double mean_share, double share, T* mean,
           const SymmetricMatrix<T>& cov) {
  for (int j = 0; j < c.q; ++j) {
    mean[c.variables[j]] = T(s.mean[j] * mean_share);
    for (int k = 0; k <= j; ++k) cov.set(c.variables[j], c.variables[k], T(s.row(j)[k] * share));
  }
}

// Results of the requested groups follow each other.
template <class T>
void write_group(const Computation<T>& c, int group, const Sums& s) {
  const Integers requested(c.task, c.task->requestedGroups);
  if (!requested[group]) return;
  int place = 0;
  for (int g = 0; g < group; ++g) place += requested[g];
  SymmetricMatrix<T> cov(c.task->groupCov, c.task->groupCovStorage, c.data.p);
  write(c, s, 1, 1 / s.freedom(), reals<T>(c.task->groupMean) + intptr_t(place) * c.data.p, cov.next(place));
}

// Adds a group to the pooled sums; one worker at a time, in the order of the groups.
template <class T>
void _vSSPldCovThreaderOrdered(int, int t, int, void* arguments) {
  Computation<T>& c = *static_cast<Computation<T>*>(arguments);
  const Sums s = c.worker_sums(t);
  if (s.W() == 0) return;
  for (int j = 0; j < c.q; ++j) {
    c.pooled.mean[j] += s.W() * s.mean[j];
    for (int k = 0; k <= j; ++k) c.pooled.row(j)[k] += s.row(j)[k];
  }
  c.pooled.weights[0] += s.W();
  c.pooled_freedom += s.freedom();
}

// ---- the whole ----

inline int check(const SSTask* task, unsigned estimates, unsigned method) {
  if (!task->groupIndices) return KOB_SS_ERROR_GROUPS_ABSENT;
  if (estimates & KOB_SS_POOLED_COVARIANCE) {
    if (!task->pooledCovStorage) return KOB_SS_ERROR_STORAGE_ABSENT;
    if (!task->pooledCov) return KOB_SS_ERROR_POOLED_COVARIANCE;
    if (!task->pooledMean) return KOB_SS_ERROR_POOLED_MEAN;
  }
  if (estimates & KOB_SS_GROUP_COVARIANCE) {
    if (!task->groupCovStorage) return KOB_SS_ERROR_STORAGE_ABSENT;
    if (!task->requestedGroups) return KOB_SS_ERROR_GROUPS_ABSENT;
    if (!task->groupCov) return KOB_SS_ERROR_GROUP_COVARIANCE;
    if (!task->groupMean) return KOB_SS_ERROR_GROUP_MEAN;
  }
  return method & KOB_SS_ONE_PASS ? KOB_SS_OK : KOB_SS_ERROR_METHOD;
}

// The number of groups, or a failure.
inline int count_groups(const SSTask* task, unsigned estimates) {
  const Integers groups(task, task->groupIndices), requested(task, task->requestedGroups);
  const int n = low_word(task->observationCount);
  int count = 0;
  for (int i = 0; i < n; ++i) {
    // The greatest index would leave no count of groups.
    if (groups.is_negative(i) || groups[i] == INT32_MAX) return KOB_SS_ERROR_GROUP_VALUE;
    if (groups[i] >= count) count = groups[i] + 1;
  }
  for (int g = 0; g < count && estimates & KOB_SS_GROUP_COVARIANCE; ++g)
    if (requested[g] != 0 && requested[g] != 1) return KOB_SS_ERROR_GROUP_VALUE;
  return count;
}

template <class T>
int compute(SSTask* task, unsigned estimates, unsigned method, const ThreadingServices* services,
            orx_worker worker) {
  if (const int status = check_data<T>(task)) return status;
  if (low_word(task->observationCount) == 0) return KOB_SS_ERROR_OBSERVATION_COUNT;
  if (const int status = check(task, estimates, method)) return status;
  const int group_count = count_groups(task, estimates);
  if (group_count < 0) return group_count;

  const ThreadingServices* threading = threading_or_serial(services);
  constexpr int least_for_threads = 11;
  Computation<T> c(task);
  const int threads = c.data.p >= least_for_threads ? threading->maxThreads() : 1;
  const bool pooled = estimates & KOB_SS_POOLED_COVARIANCE;
  c.estimates = estimates;
  c.threading = threading;
  const Block<int> variables(c.data.p);
  if (!variables) return KOB_SS_ERROR_MEMORY;
  c.variables = variables.get();
  for (int j = 0; j < c.data.p; ++j)
    if (c.selection[j]) c.variables[c.q++] = j;
  const int64_t size = Sums::size(c.q);
  const Block<double> work((size + c.q) * threads + (pooled ? size : 0));
  if (!work) return KOB_SS_ERROR_MEMORY;
  c.sums = work.get();
  c.values = c.sums + size * threads;
  if (pooled) {
    c.pooled = Sums(c.values + intptr_t(c.q) * threads, c.q);
    c.pooled.clear();
  }
  threading->parallelForOrdered(group_count, threads, &c, worker);
  if (pooled)
    write(c, c.pooled, 1 / c.pooled.W(), 1 / c.pooled_freedom, reals<T>(task->pooledMean),
          SymmetricMatrix<T>(task->pooledCov, task->pooledCovStorage, c.data.p));
  return KOB_SS_OK;
}

}  // namespace orx::ss::pldcov
