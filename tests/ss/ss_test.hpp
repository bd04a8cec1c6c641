// What the tests of the statistics share: both precisions under one name, a task with its data, allocation failures.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

#include "orx/ss.h"
#include "support/threads.hpp"

// ---- the two precisions ----

template <class T>
struct Api;

// clang-format off
#define ORX_SS_API(t, T)                                                       \
  template <>                                                                  \
  struct Api<T> {                                                              \
    static constexpr auto new_task = __kob##t##SSNewTask;                      \
    static constexpr auto edit = __kob##t##SSEditTask;                         \
    static constexpr auto basic = _kob##t##SSBasic;                            \
    static constexpr auto describe = __kob##t##SSDescribe;                     \
    static constexpr auto join = __kob##t##SSJoinBasic;                        \
    static constexpr auto join_minmax = __kob##t##SSJoinMinmax;                \
    static constexpr auto quantiles = _kob##t##SSQuantiles;                    \
    static constexpr auto stream_quantiles = _kob##t##SSStreamQuantiles;       \
    static constexpr auto pooled = _kob##t##SSPooledCovariance;                \
    static constexpr auto partial = _kob##t##SSPartialCovariance;              \
    static constexpr auto minmax = _kob##t##SSMinmax;                          \
    static constexpr auto distances = _kob##t##SSMahDistance;                  \
    static constexpr auto edit_distances = __kob##t##SSEditMahDistance;        \
    static constexpr auto parametrize = _kob##t##SSCorParametrization;         \
    static constexpr auto weighted_median = _kob##t##SSWMedian;                \
    static constexpr auto robust = _kob##t##SSRobustCovariance;                \
    static constexpr auto edit_robust = __kob##t##SSEditRCov;                  \
    static constexpr auto outliers = _kob##t##SSOutliersDetection;             \
    static constexpr auto edit_outliers = __kob##t##SSEditOutDetect;           \
    static constexpr auto impute = _kob##t##SSMissingValues;                   \
    static constexpr auto edit_missing = __kob##t##SSEditMissingVals;          \
    static constexpr auto edit_moments = __kob##t##SSEditMoments;              \
    static constexpr auto edit_partial = __kob##t##SSEditPartialCovCor;        \
  };
// clang-format on
ORX_SS_API(d, double)
ORX_SS_API(s, float)

using Precisions = testing::Types<double, float>;

// ---- a task ----

template <class T>
struct Task {
  SSTask* task = nullptr;
  int p, n, storage;
  std::vector<T> x;

  Task(int p_, int n_, int storage_, std::vector<T> data, const T* weights = nullptr,
       const int* indices = nullptr)
      : p(p_), n(n_), storage(storage_), x(std::move(data)) {
    EXPECT_EQ(Api<T>::new_task(&task, &p, &n, &storage, x.data(), weights, indices, 0), KOB_SS_OK);
  }
  // Of which nothing but the dimension is told.
  explicit Task(int p_) : p(p_), n(0), storage(0) {
    EXPECT_EQ(Api<T>::new_task(&task, &p, nullptr, nullptr, nullptr, nullptr, nullptr, 0), KOB_SS_OK);
  }
  ~Task() { __kobSSDeleteTask(&task); }
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;

  void set(int id, const T* array) { EXPECT_EQ(Api<T>::edit(task, id, array), KOB_SS_OK) << id; }
  void set(int id, const int* integers) { EXPECT_EQ(__kobiSSEditTask(task, id, integers), KOB_SS_OK) << id; }
};

// What a computation lacks: the status that tells so, and the parameter that mends it.
template <class T>
struct Lack {
  int status, id;
  const T* array = nullptr;
  const int* integers = nullptr;

  Lack(int s, int i, const T* a) : status(s), id(i), array(a) {}
  Lack(int s, int i, const int* a) : status(s), id(i), integers(a) {}
};

// Mends one lack after the other, each being told before the next.
template <class T>
void mend(Task<T>& t, const std::function<int()>& call, const std::vector<Lack<T>>& lacks) {
  for (const Lack<T>& lack : lacks) {
    EXPECT_EQ(call(), lack.status) << "before parameter " << lack.id;
    lack.array ? t.set(lack.id, lack.array) : t.set(lack.id, lack.integers);
  }
}

// ---- data ----

// Data of p variables by n observations, variable by variable, in the wanted storage.
template <class T>
std::vector<T> stored(const std::vector<T>& rows, int p, int n, int storage) {
  if (storage == KOB_SS_ROWS) return rows;
  std::vector<T> x(rows.size());
  for (int j = 0; j < p; ++j)
    for (int i = 0; i < n; ++i) x[size_t(i) * p + j] = rows[size_t(j) * n + i];
  return x;
}

// The index of element (i, j) of a symmetric matrix, or of (j, i) where that is the one stored.
inline int packed(int storage, int p, int i, int j) {
  if (storage == KOB_SS_FULL) return i * p + j;
  const int low = std::min(i, j), high = std::max(i, j);
  return storage == KOB_SS_LOWER_PACKED ? high * (high + 1) / 2 + low
                                        : low * p - low * (low - 1) / 2 + high - low;
}

// ---- failing allocations ----

// Makes the first, second, ... allocation of `call` fail until it needs no more, and returns how many it
// makes. Whatever fails, no block may stay behind.
inline int fail_each_allocation(const std::function<int()>& call, const std::function<void(int)>& failed) {
  for (int k = 1;; ++k) {
    const long before = orx_serv_live_blocks();
    orx_serv_fail_allocation(k);
    const int status = call();
    // Another allocation tells whether the order was carried out.
    void* probe = orx_serv_allocate(8, 128);
    const bool carried_out = probe != nullptr;
    orx_serv_deallocate(probe);
    orx_serv_fail_allocation(0);
    EXPECT_EQ(orx_serv_live_blocks(), before) << "allocation " << k;
    if (!carried_out) return k - 1;
    failed(status);
    if (k > 1000) return -1;
  }
}

// What `call` returns; it must leave as many blocks as it found.
template <class Call>
int without_loss(Call call) {
  const long before = orx_serv_live_blocks();
  const int status = call();
  EXPECT_EQ(orx_serv_live_blocks(), before);
  return status;
}
