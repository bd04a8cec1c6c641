// Pooled, group and partial covariance, minima and maxima.
#include <cmath>

#include "mp.hpp"
#include "ss_test.hpp"

namespace {

// ---- pooled and group covariance ----

// Mean, covariance sums and weights of the observations of one group, in many bits.
template <class T>
struct GroupJudge {
  Mp W, W2;
  std::vector<Mp> mean, sums;

  GroupJudge(const std::vector<T>& rows, const T* w, int p, const std::vector<int>& groups, int group)
      : mean(p), sums(p * p) {
    const int n = int(groups.size());
    const auto weight = [&](int i) { return w ? Mp(double(w[i])) : Mp(1); };
    for (int i = 0; i < n; ++i) {
      if (groups[i] != group) continue;
      W += weight(i);
      W2 += weight(i) * weight(i);
      for (int j = 0; j < p; ++j) mean[j] += weight(i) * double(rows[size_t(j) * n + i]);
    }
    for (Mp& m : mean) m /= W;
    for (int i = 0; i < n; ++i)
      for (int j = 0; j < p && groups[i] == group; ++j)
        for (int k = 0; k < p; ++k)
          sums[j * p + k] += weight(i) * (Mp(double(rows[size_t(j) * n + i])) - mean[j]) *
                             (Mp(double(rows[size_t(k) * n + i])) - mean[k]);
  }
  Mp freedom() const { return W - W2 / W; }
};

template <class T>
struct Covariance : testing::Test {
  std::mt19937_64 random{12};
  std::normal_distribution<double> normal;

  std::vector<T> data(int p, int n) {
    std::vector<T> x(size_t(p) * n);
    for (T& v : x) v = T(1 + normal(random));
    return x;
  }
  static void near(T got, const Mp& want, double scale, const std::string& what) {
    EXPECT_LE(double(abs(Mp(double(got)) - want)), 40 * scale * std::numeric_limits<T>::epsilon())
        << what << ": " << got << " instead of " << double(want);
  }
};
TYPED_TEST_SUITE(Covariance, Precisions);

template <class T>
struct PooledTask : Task<T> {
  std::vector<T> pooled_mean, pooled_cov, group_mean, group_cov;
  std::vector<int> groups, requested;
  int pooled_storage = KOB_SS_LOWER_PACKED, group_storage = KOB_SS_UPPER_PACKED;

  PooledTask(int p, int n, int storage, std::vector<T> x, const T* weights, const int* indices,
             std::vector<int> groups_, std::vector<int> requested_)
      : Task<T>(p, n, storage, std::move(x), weights, indices),
        pooled_mean(p, T(-77)),
        pooled_cov(p * p, T(-77)),
        group_mean(3 * p, T(-77)),
        group_cov(3 * p * p, T(-77)),
        groups(std::move(groups_)),
        requested(std::move(requested_)) {
    this->set(KOB_SS_ID_GROUP_INDICES, groups.data());
    this->set(KOB_SS_ID_REQUESTED_GROUPS, requested.data());
    this->set(KOB_SS_ID_POOLED_MEAN, pooled_mean.data());
    this->set(KOB_SS_ID_POOLED_COVARIANCE, pooled_cov.data());
    this->set(KOB_SS_ID_POOLED_COVARIANCE_STORAGE, &pooled_storage);
    this->set(KOB_SS_ID_GROUP_MEAN, group_mean.data());
    this->set(KOB_SS_ID_GROUP_COVARIANCE, group_cov.data());
    this->set(KOB_SS_ID_GROUP_COVARIANCE_STORAGE, &group_storage);
  }
  int compute(int estimates, int workers = 3) {
    return Api<T>::pooled(this->task, estimates, KOB_SS_ONE_PASS, Threads::table(workers));
  }
};

constexpr int pooled_and_groups = KOB_SS_POOLED_COVARIANCE | KOB_SS_GROUP_COVARIANCE;

// Groups 0 to 3, the last but one empty; 0, 1 and 3 requested, with the empty one left out of the pool.
TYPED_TEST(Covariance, PooledAndGroups) {
  using T = TypeParam;
  for (const int p : {3, 12}) {  // one worker, then several
    const int n = 150;
    const std::vector<T> rows = this->data(p, n);
    std::vector<int> groups(n), mask(p, 1);
    for (int& g : groups) g = int(this->random() % 3) * 3 / 2;
    mask[1] = 0;
    std::vector<T> w(n);
    for (T& v : w) v = T(this->random() % 4);
    for (const T* weights : {static_cast<const T*>(nullptr), static_cast<const T*>(w.data())}) {
      std::vector<GroupJudge<T>> right;
      Mp W, freedom;
      for (const int g : {0, 1, 3}) {
        right.emplace_back(rows, weights, p, groups, g);
        W += right.back().W;
        freedom += right.back().freedom();
      }
      for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
        for (const int* indices : {static_cast<const int*>(nullptr), static_cast<const int*>(mask.data())}) {
          PooledTask<T> t(p, n, storage, stored(rows, p, n, storage), weights, indices, groups, {1, 1, 0, 1});
          ASSERT_EQ(t.compute(pooled_and_groups), 0);
          for (int j = 0; j < p; ++j)
            for (int k = 0; k <= j; ++k) {
              const bool wanted = !indices || (indices[j] && indices[k]);
              Mp pooled_mean, pooled_sum;
              for (int g = 0; g < 3; ++g) {
                const T cov = t.group_cov[g * p * (p + 1) / 2 + packed(t.group_storage, p, j, k)];
                const T mean = t.group_mean[g * p + j];
                if (wanted) {
                  this->near(cov, right[g].sums[j * p + k] / right[g].freedom(), 5, "group covariance");
                  this->near(mean, right[g].mean[j], 1, "group mean");
                } else {
                  EXPECT_EQ(cov, T(-77));
                  if (!indices[j]) {
                    EXPECT_EQ(mean, T(-77));
                  }
                }
                pooled_mean += right[g].W * right[g].mean[j] / W;
                pooled_sum += right[g].sums[j * p + k];
              }
              if (!wanted) continue;
              this->near(t.pooled_mean[j], pooled_mean, 1, "pooled mean");
              this->near(t.pooled_cov[packed(t.pooled_storage, p, j, k)], pooled_sum / freedom, 5,
                         "pooled covariance");
            }
        }
    }
  }
}

// Many observations of two groups far from 0.
TYPED_TEST(Covariance, ManyObservations) {
  using T = TypeParam;
  const int p = 2, n = 200001, indices[p] = {1, 1};
  std::vector<int> groups(n);
  for (int i = 0; i < n; ++i) groups[i] = i % 2;
  std::vector<T> rows(size_t(p) * n), w(n);
  const double offset = sizeof(T) == 8 ? 1e7 : 1000;
  for (int i = 0; i < n; ++i) {
    w[i] = T(i < 5 ? 0 : 1);
    rows[i] = T(offset + (i / 2) % 5);
    rows[n + i] = T(offset - (i / 2) % 3);
  }
  for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
    for (const T* weights : {static_cast<const T*>(nullptr), static_cast<const T*>(w.data())})
      for (const int* mask : {static_cast<const int*>(nullptr), static_cast<const int*>(indices)}) {
        PooledTask<T> t(p, n, storage, stored(rows, p, n, storage), weights, mask, groups, {0, 1});
        ASSERT_EQ(t.compute(pooled_and_groups), 0);
        double sums[3] = {}, W = 0;
        for (int i = 1; i < n; i += 2)
          if (const double wi = weights ? double(w[i]) : 1; wi != 0) {
            const double a = (i / 2) % 5 - 2, b = (i / 2) % 3 - 1;
            sums[0] += a * a, sums[1] -= a * b, sums[2] += b * b, W += 1;
          }
        for (int k = 0; k < 3; ++k) EXPECT_NEAR(t.group_cov[k], sums[k] / (W - 1), 2e-5) << k;
      }
}

// Data far from 0, with few and with many observations, and groups whose numbers say nothing of how many there are.
TEST(PooledFixed, FarFromZeroAndStrayNumbers) {
  const int p = 3;
  std::mt19937_64 random(2);
  std::normal_distribution<double> normal;
  for (const int n : {60, 3000}) {
    std::vector<int> groups(n);
    for (int& g : groups) g = random() % 20 == 0 ? 100000000 : int(random() % 2) * 70000;
    std::vector<double> rows(size_t(p) * n);
    for (double& v : rows) v = 1e8 + normal(random);
    for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS}) {
      PooledTask<double> t(p, n, storage, stored(rows, p, n, storage), nullptr, nullptr, groups, {0});
      ASSERT_EQ(t.compute(KOB_SS_POOLED_COVARIANCE), 0);
      Mp sums[p * p], freedom;
      for (const int g : {0, 70000, 100000000}) {
        const GroupJudge<double> right(rows, nullptr, p, groups, g);
        freedom += right.freedom();
        for (int k = 0; k < p * p; ++k) sums[k] += right.sums[k];
      }
      for (int j = 0; j < p; ++j)
        for (int k = 0; k <= j; ++k)
          EXPECT_LE(
              double(abs(Mp(t.pooled_cov[packed(t.pooled_storage, p, j, k)]) - sums[j * p + k] / freedom)),
              1e-14);
    }
  }
}

// As many groups as observations, asked for in part.
TEST(PooledFixed, ManyGroups) {
  const int n = 5000;
  std::vector<double> x(n);
  std::vector<int> groups(n), requested(n, 0);
  for (int i = 0; i < n; ++i) {
    groups[i] = int((i * 7919LL) % n) / 2 * 2;  // pairs; odd numbers are empty
    x[i] = groups[i] + (i % 3);
  }
  requested[4] = requested[7] = requested[4998] = 1;
  PooledTask<double> t(1, n, KOB_SS_ROWS, x, nullptr, nullptr, groups, requested);
  ASSERT_EQ(t.compute(pooled_and_groups), 0);
  int place = 0;
  for (const int g : {4, 7, 4998}) {
    std::vector<double> own;
    for (int i = 0; i < n; ++i)
      if (groups[i] == g) own.push_back(x[i]);
    if (own.empty()) {
      EXPECT_TRUE(std::isnan(t.group_mean[place]) && std::isnan(t.group_cov[place]));
    } else {
      ASSERT_EQ(own.size(), 2u);
      EXPECT_EQ(t.group_mean[place], (own[0] + own[1]) / 2);
      EXPECT_EQ(t.group_cov[place], (own[0] - own[1]) * (own[0] - own[1]) / 2);
    }
    ++place;
  }
}

TYPED_TEST(Covariance, PooledStatusesInTheirOrder) {
  using T = TypeParam;
  std::vector<T> results(8, T(-77));
  int pooled_storage = 0, group_storage = 0;
  std::vector<int> groups = {0, -1, 1}, requested = {1, 2};
  Task<T> t(2, 3, KOB_SS_ROWS, {1, 2, 3, 4, 5, 6});
  const auto call = [&](int method = KOB_SS_ONE_PASS) {
    return Api<T>::pooled(t.task, pooled_and_groups, method, Threads::table(1));
  };
  mend<T>(t, [&] { return call(); },
          {{-4030, KOB_SS_ID_GROUP_INDICES, groups.data()},
           {-4044, KOB_SS_ID_POOLED_COVARIANCE_STORAGE, &pooled_storage},
           {-4034, KOB_SS_ID_POOLED_COVARIANCE, results.data()},
           {-4035, KOB_SS_ID_POOLED_MEAN, results.data()},
           {-4044, KOB_SS_ID_GROUP_COVARIANCE_STORAGE, &group_storage},
           {-4030, KOB_SS_ID_REQUESTED_GROUPS, requested.data()},
           {-4036, KOB_SS_ID_GROUP_COVARIANCE, results.data()},
           {-4037, KOB_SS_ID_GROUP_MEAN, results.data()}});
  EXPECT_EQ(call(KOB_SS_FAST), -4029);
  EXPECT_EQ(call(), -4038);
  groups[1] = INT32_MAX;
  EXPECT_EQ(call(), -4038);
  groups[1] = 0;
  EXPECT_EQ(call(), -4038);
  EXPECT_EQ(results, std::vector<T>(8, T(-77)));

  PooledTask<T> whole(2, 3, KOB_SS_ROWS, {1, 2, 3, 4, 5, 6}, nullptr, nullptr, {0, 0, 1}, {1, 1});
  EXPECT_EQ(fail_each_allocation([&] { return whole.compute(pooled_and_groups); },
                                 [](int status) { EXPECT_EQ(status, -4000); }),
            4);
  EXPECT_TRUE(std::isnan(whole.group_cov[3]));  // one observation
  EXPECT_EQ(whole.pooled_cov[0], T(0.5));
}

// ---- partial covariance ----

// A covariance matrix of p variables, and what is left of it for those of role 1 given those of role -1, by
// Gaussian elimination of the latter.
template <class T>
struct PartialCase {
  int p;
  std::vector<T> cov;
  std::vector<int> roles, kept;
  std::vector<double> partial;

  PartialCase(const std::vector<T>& factors, std::vector<int> roles_)
      : p(int(roles_.size())), cov(p * p), roles(std::move(roles_)) {
    std::vector<Mp> a(p * p);
    for (int i = 0; i < p; ++i)
      for (int j = 0; j < p; ++j) {
        double sum = i == j;
        for (int k = 0; k < p; ++k) sum += double(factors[i * p + k]) * double(factors[j * p + k]);
        cov[i * p + j] = T(sum);
        a[i * p + j] = double(cov[i * p + j]);
      }
    for (int z = 0; z < p; ++z)
      for (int i = 0; i < p && roles[z] == -1; ++i) {
        if (i == z) continue;
        const Mp factor = a[i * p + z] / a[z * p + z];
        for (int j = 0; j < p; ++j) a[i * p + j] -= factor * a[z * p + j];
      }
    for (int i = 0; i < p; ++i)
      if (roles[i] == 1) kept.push_back(i);
    for (const int i : kept)
      for (const int j : kept) partial.push_back(double(a[i * p + j]));
  }
};

TYPED_TEST(Covariance, PartialFromCovarianceAndFromCorrelation) {
  using T = TypeParam;
  const PartialCase<T> c(this->data(6, 6), {1, -1, 1, 0, -1, 1});
  const int p = c.p, q = int(c.kept.size());
  for (int storage = 0; storage < 3; ++storage)
    for (const bool correlation : {false, true}) {
      const int cov_storage = storage, cor_storage = (storage + 1) % 3, source_storage = (storage + 2) % 3;
      std::vector<T> given(p * p), cov(q * q, T(-77)), cor(q * q, T(-77));
      for (int i = 0; i < p; ++i)
        for (int j = 0; j < p; ++j) {
          const double v = c.cov[i * p + j];
          given[packed(source_storage, p, i, j)] =
              T(correlation && i != j ? v / std::sqrt(double(c.cov[i * p + i]) * c.cov[j * p + j]) : v);
        }
      Task<T> t(p, 1, KOB_SS_ROWS, std::vector<T>(p));
      EXPECT_EQ(Api<T>::edit_partial(t.task, c.roles.data(), correlation ? nullptr : given.data(),
                                     &source_storage, correlation ? given.data() : nullptr, &source_storage,
                                     cov.data(), &cov_storage, cor.data(), &cor_storage),
                0);
      ASSERT_EQ(Api<T>::partial(t.task, KOB_SS_PARTIAL_COVARIANCE | KOB_SS_PARTIAL_CORRELATION, KOB_SS_FAST,
                                Threads::table(1)),
                0);
      for (int i = 0; i < q; ++i)
        for (int j = 0; j < q; ++j) {
          const double want = c.partial[i * q + j],
                       scale = std::sqrt(c.partial[i * q + i] * c.partial[j * q + j]);
          this->near(cov[packed(cov_storage, q, i, j)], want, 30 * scale, "partial covariance");
          this->near(cor[packed(cor_storage, q, i, j)], i == j ? want : want / scale, i == j ? 30 * want : 30,
                     "partial correlation");
        }
      EXPECT_EQ(fail_each_allocation(
                    [&] {
                      return Api<T>::partial(t.task, KOB_SS_PARTIAL_COVARIANCE, KOB_SS_FAST,
                                             Threads::table(1));
                    },
                    [](int status) { EXPECT_EQ(status, -4000); }),
                2);
    }
}

TYPED_TEST(Covariance, PartialStatusesInTheirOrder) {
  using T = TypeParam;
  const int full = KOB_SS_FULL;
  const std::vector<T> cov = {1, 0, 0, -1};
  std::vector<T> results(4, T(-77));
  std::vector<int> roles = {1, 1};
  Task<T> t(2, 1, KOB_SS_ROWS, {1, 2});
  const auto call = [&](int method = KOB_SS_FAST) {
    return Api<T>::partial(t.task, KOB_SS_PARTIAL_COVARIANCE | KOB_SS_PARTIAL_CORRELATION, method,
                           Threads::table(1));
  };
  mend<T>(t, [&] { return call(); },
          {{-4018, KOB_SS_ID_CORRELATION, cov.data()},
           {-4044, KOB_SS_ID_CORRELATION_STORAGE, &full},
           {-4045, KOB_SS_ID_COVARIANCE, cov.data()},  // wins over the correlation, but has no storage
           {-4044, KOB_SS_ID_COVARIANCE_STORAGE, &full},
           {-4045, KOB_SS_ID_PARTIAL_INDICES, roles.data()},
           {-4046, KOB_SS_ID_PARTIAL_COVARIANCE, results.data()},
           {-4044, KOB_SS_ID_PARTIAL_COVARIANCE_STORAGE, &full},
           {-4047, KOB_SS_ID_PARTIAL_CORRELATION, results.data()},
           {-4044, KOB_SS_ID_PARTIAL_CORRELATION_STORAGE, &full}});
  EXPECT_EQ(call(KOB_SS_ONE_PASS), -4029);
  for (const int role : {1, 0, -1}) {  // nothing is given; nothing is given; nothing is left
    roles = {role, role == -1 ? -1 : 1};
    EXPECT_EQ(call(), -4073);
  }
  roles = {1, -1};
  EXPECT_EQ(call(), -5010);  // a negative variance
  EXPECT_EQ(results, std::vector<T>(4, T(-77)));
  EXPECT_EQ(Api<T>::partial(nullptr, KOB_SS_PARTIAL_COVARIANCE, KOB_SS_FAST, Threads::table(1)), -4031);
}

// ---- minima and maxima ----

TYPED_TEST(Covariance, MinimaAndMaximaRun) {
  using T = TypeParam;
  const T inf = std::numeric_limits<T>::infinity(), nan = std::numeric_limits<T>::quiet_NaN();
  for (const int p : {1, 3, 4, 9})
    for (const int n : {1, 3, 17, 1000})
      for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS}) {
        std::vector<T> rows = this->data(p, n), least(p, inf), greatest(p, -inf);
        rows[this->random() % rows.size()] = nan;
        std::vector<int> mask(p, 1);
        mask[p / 2] = p == 1;
        Task<T> t(p, n, storage, stored(rows, p, n, storage), nullptr, mask.data());
        t.set(KOB_SS_ID_MINIMUM, least.data());
        t.set(KOB_SS_ID_MAXIMUM, greatest.data());
        greatest[0] = 100;  // of an earlier block
        const auto call = [&](int estimates, int method) {
          return Api<T>::minmax(t.task, estimates, method, Threads::table(1));
        };
        ASSERT_EQ(call(0, KOB_SS_FAST), 0);
        EXPECT_EQ(least[0], inf);
        EXPECT_EQ(fail_each_allocation([&] { return call(KOB_SS_MINIMUM, KOB_SS_ONE_PASS); },
                                       [](int status) { EXPECT_EQ(status, -4000); }),
                  1);
        ASSERT_EQ(call(KOB_SS_MINIMUM | KOB_SS_MAXIMUM, KOB_SS_FAST), 0);
        for (int j = 0; j < p; ++j) {
          T low = inf, high = j == 0 ? 100 : -inf;
          for (int i = 0; i < n && mask[j]; ++i) {
            const T x = rows[size_t(j) * n + i];
            low = x < low ? x : low;
            high = x > high ? x : high;
          }
          EXPECT_EQ(least[j], low);
          EXPECT_EQ(greatest[j], high);
        }
      }
}

// A first observation that is NaN serves as a seed as well as any other.
TYPED_TEST(Covariance, MinimaAndMaximaSeededWithNan) {
  using T = TypeParam;
  const T inf = std::numeric_limits<T>::infinity(), nan = std::numeric_limits<T>::quiet_NaN();
  for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS}) {
    const std::vector<T> rows = {nan, 3, -5, nan, nan, nan};
    std::vector<T> least(2, nan), greatest(2, nan);
    Task<T> t(2, 3, storage, stored(rows, 2, 3, storage));
    t.set(KOB_SS_ID_MINIMUM, least.data());
    t.set(KOB_SS_ID_MAXIMUM, greatest.data());
    ASSERT_EQ(Api<T>::minmax(t.task, KOB_SS_MINIMUM | KOB_SS_MAXIMUM, KOB_SS_FAST, Threads::table(1)), 0);
    EXPECT_EQ(least, (std::vector<T>{-5, inf}));
    EXPECT_EQ(greatest, (std::vector<T>{3, -inf}));
  }
}

TYPED_TEST(Covariance, MinimaAndMaximaJoined) {
  using T = TypeParam;
  const T nan = std::numeric_limits<T>::quiet_NaN();
  std::vector<T> least = {1, 5, nan, -3}, greatest = {2, 6, nan, 4}, other_least = {0, 7, -2, nan},
                 other_greatest = {1, 9, 3, nan};
  Task<T> t(4), other(4), narrow(3);
  EXPECT_EQ(Api<T>::join_minmax(t.task, other.task, KOB_SS_MINIMUM), -4015);
  t.set(KOB_SS_ID_MINIMUM, least.data());
  t.set(KOB_SS_ID_MAXIMUM, greatest.data());
  EXPECT_EQ(Api<T>::join_minmax(t.task, other.task, KOB_SS_MAXIMUM), -4016);
  other.set(KOB_SS_ID_MINIMUM, other_least.data());
  other.set(KOB_SS_ID_MAXIMUM, other_greatest.data());
  EXPECT_EQ(Api<T>::join_minmax(t.task, narrow.task, 0), -4001);
  ASSERT_EQ(Api<T>::join_minmax(t.task, other.task, KOB_SS_MINIMUM | KOB_SS_MAXIMUM), 0);
  EXPECT_EQ(least, (std::vector<T>{0, 5, -2, -3}));
  EXPECT_EQ(greatest, (std::vector<T>{2, 9, 3, 4}));
}

TYPED_TEST(Covariance, MinmaxStatuses) {
  using T = TypeParam;
  T result = 5;
  Task<T> t(1, 2, KOB_SS_ROWS, {1, 2});
  const auto call = [&](int estimates, int method) {
    return Api<T>::minmax(t.task, estimates, method, Threads::table(1));
  };
  EXPECT_EQ(call(KOB_SS_MINIMUM | KOB_SS_MAXIMUM, 0), -4015);
  t.set(KOB_SS_ID_MINIMUM, &result);
  EXPECT_EQ(call(KOB_SS_MINIMUM | KOB_SS_MAXIMUM, 0), -4016);
  EXPECT_EQ(call(KOB_SS_MINIMUM, 0x4), -4029);
  EXPECT_EQ(result, T(5));
}

}  // namespace
