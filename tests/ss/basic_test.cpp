// Moments, covariance and correlation against a computation in 400 bits; blocks, workers, weights, statuses.
#include <sys/mman.h>

#include <memory>

#include "mp.hpp"
#include "ss_test.hpp"

namespace {

// ---- the judge ----

// The moments of one variable; those by order at 1 to 4.
struct Moments {
  Mp mean, raw[5], central[5], kurtosis, skewness, variation;
  Mp absolute[5], spread[5];  // means of |x|^k and |x - mean|^k, for tolerances
};

// All results for data variable by variable.
template <class T>
struct Judge {
  int p, n;
  Mp W, W2;
  std::vector<Moments> moments;
  std::vector<Mp> covariance;

  Judge(const std::vector<T>& rows, const T* weights, int p_) : p(p_), n(int(rows.size()) / p_) {
    std::vector<Mp> w(n, Mp(1)), d(rows.size());
    for (int i = 0; i < n; ++i) {
      if (weights) w[i] = double(weights[i]);
      W += w[i];
      W2 += w[i] * w[i];
    }
    for (int j = 0; j < p; ++j) moments.push_back(judge(&rows[size_t(j) * n], w, &d[size_t(j) * n]));
    for (int j = 0; j < p; ++j)
      for (int k = 0; k < p; ++k) {
        Mp sum;
        for (int i = 0; i < n && k <= j; ++i) sum += w[i] * d[size_t(j) * n + i] * d[size_t(k) * n + i];
        covariance.push_back(k <= j ? sum / (W - W2 / W) : Mp());
      }
  }

 private:
  Moments judge(const T* x, const std::vector<Mp>& w, Mp* d) const {
    Moments m;
    for (int k = 1; k <= 4; ++k)
      for (int i = 0; i < n; ++i) {
        const Mp xi = double(x[i]), term = w[i] * power(xi, k) / W;
        m.raw[k] += term;
        m.absolute[k] += abs(term);
      }
    m.mean = m.raw[1];
    for (int i = 0; i < n; ++i) {
      d[i] = Mp(double(x[i])) - m.mean;
      for (int k = 2; k <= 4; ++k) {
        const Mp term = w[i] * power(d[i], k) / W;
        m.central[k] += term;
        m.spread[k] += abs(term);
      }
    }
    m.central[2] *= W / (W - W2 / W);
    m.kurtosis = m.central[4] / (m.central[2] * m.central[2]) - 3;
    m.skewness = m.central[3] / sqrt(power(m.central[2], 3));
    m.variation = sqrt(m.central[2]) / m.mean;
    return m;
  }
};

// ---- a task with all results ----

constexpr int everything = KOB_SS_MEAN | KOB_SS_RAW_MOMENT_2 | KOB_SS_RAW_MOMENT_3 | KOB_SS_RAW_MOMENT_4 |
                           KOB_SS_CENTRAL_MOMENT_2 | KOB_SS_CENTRAL_MOMENT_3 | KOB_SS_CENTRAL_MOMENT_4 |
                           KOB_SS_KURTOSIS | KOB_SS_SKEWNESS | KOB_SS_VARIATION | KOB_SS_COVARIANCE |
                           KOB_SS_CORRELATION;
constexpr int moments = everything & ~(KOB_SS_COVARIANCE | KOB_SS_CORRELATION);

template <class T>
struct BasicTask : Task<T> {
  std::vector<T> mean, raw[5], central[5], kurtosis, skewness, variation, cov, cor;
  int cov_storage = KOB_SS_FULL, cor_storage = KOB_SS_LOWER_PACKED;
  T sums[2] = {0, 0};

  BasicTask(int p, int n, int storage, const std::vector<T>& x, const T* weights = nullptr,
            const int* indices = nullptr)
      : Task<T>(p, n, storage, x, weights, indices) {
    const auto give = [&](int id, std::vector<T>& v, int size) {
      v.assign(size, T(-77));
      this->set(id, v.data());
    };
    give(KOB_SS_ID_MEAN, mean, p);
    for (int k = 2; k <= 4; ++k) {
      give(KOB_SS_ID_RAW_MOMENT_2 + k - 2, raw[k], p);
      give(KOB_SS_ID_CENTRAL_MOMENT_2 + k - 2, central[k], p);
    }
    give(KOB_SS_ID_KURTOSIS, kurtosis, p);
    give(KOB_SS_ID_SKEWNESS, skewness, p);
    give(KOB_SS_ID_VARIATION, variation, p);
    give(KOB_SS_ID_COVARIANCE, cov, p * p);
    give(KOB_SS_ID_CORRELATION, cor, p * p);
    this->set(KOB_SS_ID_COVARIANCE_STORAGE, &cov_storage);
    this->set(KOB_SS_ID_CORRELATION_STORAGE, &cor_storage);
    this->set(KOB_SS_ID_ACCUMULATED_WEIGHTS, sums);
  }

  int compute(int estimates, int method, int workers = 1) {
    return Api<T>::basic(this->task, estimates, method, Threads::table(workers));
  }
  // The whole data in blocks of the given sizes.
  int compute_by_blocks(const std::vector<T>& x, const T* weights, const std::vector<int>& sizes,
                        int estimates, int method) {
    const int n = this->n, p = this->p;
    int first = 0;
    for (const int size : sizes) {
      std::vector<T> block(size_t(size) * p);
      for (int j = 0; j < p; ++j)
        for (int i = 0; i < size; ++i)
          block[this->storage == KOB_SS_ROWS ? size_t(j) * size + i : size_t(i) * p + j] =
              x[this->storage == KOB_SS_ROWS ? size_t(j) * n + first + i : size_t(first + i) * p + j];
      this->set(KOB_SS_ID_OBSERVATIONS, block.data());
      this->set(KOB_SS_ID_OBSERVATION_COUNT, &size);
      if (weights) this->set(KOB_SS_ID_WEIGHTS, weights + first);
      if (const int status = compute(estimates, method)) return status;
      first += size;
    }
    return 0;
  }
};

template <class T>
struct Basic : testing::Test {
  static constexpr double unit = std::numeric_limits<T>::epsilon();
  static constexpr int methods[] = {KOB_SS_FAST, KOB_SS_ONE_PASS, KOB_SS_USER_MEAN};
  std::mt19937_64 random{1};

  // Correlated variables of different centre and spread, positive skewness.
  std::vector<T> data(int p, int n) {
    std::normal_distribution<double> normal;
    std::exponential_distribution<double> exponential;
    std::vector<T> x(size_t(p) * n);
    for (int i = 0; i < n; ++i) {
      const double shared = normal(random);
      for (int j = 0; j < p; ++j)
        x[size_t(j) * n + i] = T(j - 1.5 + (1 + j % 3) * (exponential(random) + shared));
    }
    return x;
  }
  std::vector<T> weights(int n) {
    std::uniform_real_distribution<double> uniform(0.1, 2);
    std::vector<T> w(n);
    for (T& v : w) v = random() % 10 == 0 ? T(0) : T(uniform(random));
    w[0] = 0;  // a leading weight of zero
    return w;
  }

  static void near(T got, const Mp& want, const Mp& scale, const std::string& what) {
    const double error = double(abs(Mp(double(got)) - want) / scale);
    EXPECT_LE(error, 60 * unit) << what << ": " << got << " instead of " << double(want);
  }

  // Holds all results against the judge. Fast makes central moments from raw ones and loses what they cancel.
  static void check(const BasicTask<T>& t, const Judge<T>& right, int method, const int* indices = nullptr) {
    const Mp factor = right.W / (right.W - right.W2 / right.W);
    for (int j = 0; j < t.p; ++j) {
      const std::string at = " method " + std::to_string(method) + " variable " + std::to_string(j) + " of " +
                             std::to_string(t.p) + " n " + std::to_string(right.n);
      if (indices && !indices[j]) {
        EXPECT_EQ(t.mean[j], T(-77)) << at;
        EXPECT_EQ(t.kurtosis[j], T(-77)) << at;
        EXPECT_EQ(t.cov[j * t.p + j], T(-77)) << at;
        continue;
      }
      const Moments& m = right.moments[j];
      near(t.mean[j], m.mean, m.absolute[1], "mean" + at);
      Mp scale[5];
      for (int k = 2; k <= 4; ++k) {
        scale[k] = method == KOB_SS_FAST ? 8 * (m.absolute[k] + power(abs(m.mean), k)) : m.spread[k];
        near(t.raw[k][j], m.raw[k], m.absolute[k], "raw " + std::to_string(k) + at);
        near(t.central[k][j], m.central[k], scale[k] * factor, "central " + std::to_string(k) + at);
      }
      const Mp c2 = m.central[2], relative2 = scale[2] * factor / c2;
      near(t.kurtosis[j], m.kurtosis, (scale[4] + 2 * abs(m.central[4]) * relative2) / (c2 * c2) + 3,
           "kurtosis" + at);
      near(t.skewness[j], m.skewness, (scale[3] + 2 * abs(m.central[3]) * relative2) / sqrt(power(c2, 3)),
           "skewness" + at);
      near(t.variation[j], m.variation, abs(m.variation) * (relative2 + m.absolute[1] / abs(m.mean)),
           "variation" + at);
    }
    check_matrices(t, right, method, indices);
  }

  static void check_matrices(const BasicTask<T>& t, const Judge<T>& right, int method, const int* indices) {
    const int p = t.p;
    for (int j = 0; j < p; ++j)
      for (int k = 0; k <= j; ++k) {
        if (indices && !(indices[j] && indices[k])) continue;
        const Mp want = right.covariance[j * p + k];
        const auto variance = [&](int i) { return right.covariance[i * p + i]; };
        // The BLAS sums about 0 in the precision of the data.
        const auto scale = [&](int i) {
          const Mp mean = right.moments[i].mean;
          return method == KOB_SS_ONE_PASS ? variance(i)
                                           : (variance(i) + mean * mean) * std::sqrt(double(right.n));
        };
        const Mp deviations = sqrt(variance(j) * variance(k)), tolerance = sqrt(scale(j) * scale(k));
        const auto element = [&](const std::vector<T>& a, int storage) {
          return a[packed(storage, p, j, k)];
        };
        const std::string at = " method " + std::to_string(method) + " (" + std::to_string(j) + ", " +
                               std::to_string(k) + ") of " + std::to_string(p) + " n " +
                               std::to_string(right.n);
        near(element(t.cov, t.cov_storage), want, tolerance, "covariance" + at);
        if (t.cov_storage == KOB_SS_FULL) {
          EXPECT_EQ(t.cov[k * p + j], t.cov[j * p + k]) << at;
        }
        // The variances stand on the diagonal.
        near(element(t.cor, t.cor_storage), j == k ? want : want / deviations,
             j == k ? tolerance : 2 * tolerance / deviations, "correlation" + at);
      }
  }

  // The user's mean is the rounded mean of the data.
  static void give_mean(BasicTask<T>& t, const Judge<T>& right) {
    for (int j = 0; j < t.p; ++j) t.mean[j] = T(double(right.moments[j].mean));
  }
};
TYPED_TEST_SUITE(Basic, Precisions);

TYPED_TEST(Basic, EveryStorageWeightAndMethodAgainstTheJudge) {
  using T = TypeParam;
  const int shapes[][2] = {{1, 5},  {1, 300}, {2, 67},   {3, 64}, {4, 129},
                           {5, 65}, {9, 70},  {10, 130}, {21, 40}};
  for (const auto& shape : shapes) {
    const int p = shape[0], n = shape[1];
    const std::vector<T> rows = this->data(p, n), w = this->weights(n);
    for (const T* weights : {static_cast<const T*>(nullptr), w.data()}) {
      const Judge<T> right(rows, weights, p);
      for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
        for (const int method : this->methods) {
          BasicTask<T> t(p, n, storage, stored(rows, p, n, storage), weights);
          t.cov_storage = (p + n) % 3;
          t.cor_storage = n % 3;
          if (method == KOB_SS_USER_MEAN) this->give_mean(t, right);
          ASSERT_EQ(t.compute(everything, method), 0);
          this->check(t, right, method);
        }
    }
  }
}

TYPED_TEST(Basic, WantedVariablesOnlyWithNarrowAndWideIntegers) {
  using T = TypeParam;
  const int p = 6, n = 90, indices[p] = {1, 0, 1, -3, 0, 1}, full = KOB_SS_FULL;
  const std::vector<T> rows = this->data(p, n);
  const Judge<T> right(rows, nullptr, p);
  for (const int method : this->methods) {
    BasicTask<T> t(p, n, KOB_SS_ROWS, rows, nullptr, indices);
    if (method == KOB_SS_USER_MEAN) this->give_mean(t, right);
    if (method == KOB_SS_USER_MEAN) t.mean[1] = t.mean[4] = T(-77);
    ASSERT_EQ(t.compute(everything, method), 0);
    this->check(t, right, method, indices);
    EXPECT_EQ(t.cov[1 * p + 2], T(-77));
    EXPECT_EQ(t.cov[2 * p + 1], T(-77));
  }
  const long long wide_p = p, wide_n = n, wide_storage = KOB_SS_ROWS, wide_full = full;
  long long wide_indices[p];
  std::copy(indices, indices + p, wide_indices);
  std::vector<T> mean(p, T(-77)), cov(p * p, T(-77));
  SSTask* task;
  ASSERT_EQ(Api<T>::new_task(&task, &wide_p, &wide_n, &wide_storage, rows.data(), nullptr, wide_indices, 1),
            0);
  Api<T>::edit(task, KOB_SS_ID_MEAN, mean.data());
  Api<T>::edit(task, KOB_SS_ID_COVARIANCE, cov.data());
  __kobiSSEditTask(task, KOB_SS_ID_COVARIANCE_STORAGE, &wide_full);
  ASSERT_EQ(Api<T>::basic(task, KOB_SS_COVARIANCE, KOB_SS_ONE_PASS, Threads::table(1)), 0);
  __kobSSDeleteTask(&task);
  for (int j = 0; j < p; ++j) {
    if (indices[j])
      this->near(mean[j], right.moments[j].mean, right.moments[j].absolute[1], "mean");
    else
      EXPECT_EQ(mean[j], T(-77));
    EXPECT_EQ(cov[j * p + 3] == T(-77), !indices[j]) << j;
  }
}

// One call against many blocks, the first of them a single observation, and against several workers in an
// order of their own: the same results up to rounding.
TYPED_TEST(Basic, BlocksAndWorkers) {
  using T = TypeParam;
  const int p = 5, n = 4200;
  const std::vector<T> rows = this->data(p, n), w = this->weights(n + 1);
  // The first weight is 0 and would make the first block empty.
  for (const T* weights : {static_cast<const T*>(nullptr), w.data() + 1}) {
    const Judge<T> right(rows, weights, p);
    for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
      for (const int method : this->methods) {
        BasicTask<T> t(p, n, storage, stored(rows, p, n, storage), weights);
        t.cov_storage = KOB_SS_UPPER_PACKED;
        t.cor_storage = KOB_SS_FULL;
        const auto start = [&] {
          t.sums[0] = t.sums[1] = 0;
          if (method == KOB_SS_USER_MEAN) this->give_mean(t, right);
        };
        for (const int workers : {2, 3, 7}) {
          start();
          // It outlives this test, and so has a generator of its own.
          Threads::arrange = [random = this->random](std::vector<int>& order) mutable {
            std::shuffle(order.begin(), order.end(), random);
          };
          ASSERT_EQ(t.compute(everything, method, workers), 0);
          EXPECT_EQ(Threads::last_asked, std::min(workers, n / 1000));
          this->near(t.sums[0], right.W, right.W, "sum of weights");
          this->check(t, right, method);
        }
        start();
        const std::vector<T> all = t.x;
        // Of one observation about a given mean the variance cannot be told, nor be taken up again.
        std::vector<int> sizes = {1, 2, 3, 64, 130, 1000, 3000};
        if (method == KOB_SS_USER_MEAN) sizes[0] = 2, sizes[1] = 1;
        ASSERT_EQ(t.compute_by_blocks(all, weights, sizes, everything, method), 0);
        this->check(t, right, method);
      }
  }
}

int fail_once(const std::function<int()>& call) {
  orx_serv_fail_allocation(1);
  const int status = call();
  orx_serv_fail_allocation(0);
  return status;
}

// Parts of the data in tasks of their own, joined, give the results of one call over all.
TYPED_TEST(Basic, PartsJoined) {
  using T = TypeParam;
  const int p = 5, n = 1300, ends[] = {0, 2, 4, 700, 700, n};
  const std::vector<T> rows = this->data(p, n), w = this->weights(n + 1);
  for (const T* weights : {static_cast<const T*>(nullptr), w.data() + 1}) {
    const Judge<T> right(rows, weights, p);
    for (const int method : this->methods) {
      std::vector<std::unique_ptr<BasicTask<T>>> parts;
      for (int k = 0; k < 5; ++k) {
        const int first = ends[k], size = ends[k + 1] - first;
        std::vector<T> x;
        for (int i = first; i < first + size; ++i)
          for (int j = 0; j < p; ++j) x.push_back(rows[size_t(j) * n + i]);
        x.push_back(0);
        parts.push_back(std::make_unique<BasicTask<T>>(p, std::max(size, 1), KOB_SS_COLUMNS, x,
                                                       weights ? weights + first : nullptr));
        parts[k]->n = size;
        parts[k]->cov_storage = k % 3;
        parts[k]->cor_storage = (k + 1) % 3;
        if (method == KOB_SS_USER_MEAN) this->give_mean(*parts[k], right);
        ASSERT_EQ(parts[k]->compute(everything, method), 0);
      }
      const auto join = [&](int a, int b) {
        return Api<T>::join(parts[a]->task, parts[b]->task, everything, method);
      };
      // An empty part changes nothing and takes no memory.
      EXPECT_EQ(fail_each_allocation([&] { return join(0, 3); }, [](int) {}), 0);
      ASSERT_EQ(join(2, 1), 0);
      ASSERT_EQ(join(4, 2), 0);
      const std::vector<T> before = parts[0]->cov;
      EXPECT_EQ(fail_once([&] { return join(0, 4); }), -4000);
      EXPECT_EQ(parts[0]->cov, before);
      ASSERT_EQ(join(0, 4), 0);
      this->near(parts[0]->sums[0], right.W, right.W, "sum of weights");
      this->check(*parts[0], right, method);
    }
  }
}

// The mean of data with an infinity is that infinity, wherever it stands, and of both there is none.
TYPED_TEST(Basic, InfiniteNumbers) {
  using T = TypeParam;
  const T inf = std::numeric_limits<T>::infinity();
  const int p = 5, n = 5000;
  for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
    for (const int method : {KOB_SS_FAST, KOB_SS_ONE_PASS})
      for (const int place : {0, 1234, n - 1})
        for (const int estimates : {KOB_SS_MEAN, everything}) {
          std::vector<T> rows = this->data(p, n);
          rows[place] = inf;
          rows[n + place] = -inf;
          rows[2 * n + place] = inf, rows[2 * n + 2000] = -inf;
          const std::vector<T> x = stored(rows, p, n, storage);
          const auto check = [&](const BasicTask<T>& t) {
            EXPECT_EQ(t.mean[0], inf);
            EXPECT_EQ(t.mean[1], -inf);
            EXPECT_TRUE(std::isnan(t.mean[2]));
            EXPECT_TRUE(std::isfinite(t.mean[3]));
          };
          for (const int workers : {1, 3}) {
            BasicTask<T> t(p, n, storage, x);
            ASSERT_EQ(t.compute(estimates, method, workers), 0);
            check(t);
          }
          BasicTask<T> t(p, n, storage, x);
          ASSERT_EQ(t.compute_by_blocks(x, nullptr, {1000, 1000, 3000}, estimates, method), 0);
          check(t);
          t.set(KOB_SS_ID_OBSERVATIONS, t.x.data());  // the blocks are gone
          t.set(KOB_SS_ID_OBSERVATION_COUNT, &t.n);
          BasicTask<T> other(p, n, storage, stored(this->data(p, n), p, n, storage));
          ASSERT_EQ(other.compute(estimates, method), 0);
          ASSERT_EQ(Api<T>::join(other.task, t.task, estimates, method), 0);
          check(other);
          ASSERT_EQ(Api<T>::join(t.task, other.task, estimates, method), 0);
          check(t);
        }
}

// The recurrences of higher orders stand on lower ones that the caller need not have asked for.
TYPED_TEST(Basic, BlocksWithOneEstimateAlone) {
  using T = TypeParam;
  const int p = 2, n = 500;
  const std::vector<T> rows = this->data(p, n);
  const Judge<T> right(rows, nullptr, p);
  for (const int method : this->methods) {
    for (const int order : {3, 4}) {
      std::vector<T> mean(p), raw[5], central(p, T(0));
      T sums[2] = {0, 0};
      Task<T> t(p, n, KOB_SS_ROWS, rows);
      for (int j = 0; j < p; ++j) mean[j] = T(double(right.moments[j].mean));
      t.set(KOB_SS_ID_MEAN, mean.data());
      for (int k = 2; k <= order; ++k) {
        raw[k].assign(p, T(0));
        t.set(KOB_SS_ID_RAW_MOMENT_2 + k - 2, raw[k].data());
      }
      t.set(KOB_SS_ID_CENTRAL_MOMENT_2 + order - 2, central.data());
      t.set(KOB_SS_ID_ACCUMULATED_WEIGHTS, sums);
      for (const int first : {0, 100, 350}) {
        const int size = first == 0 ? 100 : first == 100 ? 250 : 150;
        std::vector<T> block;
        for (int j = 0; j < p; ++j)
          block.insert(block.end(), &rows[size_t(j) * n + first], &rows[size_t(j) * n + first] + size);
        t.set(KOB_SS_ID_OBSERVATIONS, block.data());
        t.set(KOB_SS_ID_OBSERVATION_COUNT, &size);
        ASSERT_EQ(Api<T>::basic(t.task, KOB_SS_CENTRAL_MOMENT_2 << (order - 2), method, Threads::table(1)),
                  0);
      }
      for (int j = 0; j < p; ++j) {
        const Moments& m = right.moments[j];
        this->near(central[j], m.central[order], 8 * (m.absolute[order] + power(abs(m.mean), order)),
                   "central " + std::to_string(order) + " method " + std::to_string(method));
      }
    }
  }
}

TYPED_TEST(Basic, WeightsOfZero) {
  using T = TypeParam;
  const T nan = std::numeric_limits<T>::quiet_NaN();
  const std::vector<T> x = {nan, nan, 3, 5, 7, -2, 1, 4}, w = {0, 0, 1, 1};  // two variables in rows
  for (const int method : {KOB_SS_FAST, KOB_SS_ONE_PASS}) {
    BasicTask<T> t(2, 4, KOB_SS_ROWS, x, w.data());
    ASSERT_EQ(t.compute(moments, method), 0);
    EXPECT_EQ(t.mean[0], T(4));
    EXPECT_EQ(t.central[2][0], T(2));
    EXPECT_EQ(t.mean[1], T(2.5));
    EXPECT_EQ(t.sums[0], T(2));
    EXPECT_EQ(t.sums[1], T(2));

    const std::vector<T> none(4, T(0));
    BasicTask<T> empty(2, 4, KOB_SS_ROWS, x, none.data());
    ASSERT_EQ(empty.compute(everything, method), 0);
    EXPECT_EQ(empty.mean[0], T(0));
    EXPECT_EQ(empty.raw[4][1], T(0));
    EXPECT_EQ(empty.cov[3], T(0));
    EXPECT_TRUE(std::isnan(empty.central[2][0]));
    EXPECT_EQ(empty.sums[0], T(0));
  }
}

// Weights of zero through whole blocks, and for all that some workers see.
TYPED_TEST(Basic, BlocksOfWeightZero) {
  using T = TypeParam;
  constexpr int p = 3, n = 30000;
  const auto counts = [](int i) { return i >= 10000 && (i < 12000 || i >= 22000); };
  std::vector<T> rows(size_t(p) * n), w(n), kept;
  for (int i = 0; i < n; ++i) w[i] = T(counts(i));
  for (int j = 0; j < p; ++j)
    for (int i = 0; i < n; ++i) {
      rows[size_t(j) * n + i] = T((i * 37 + j * 11) % 101);
      if (counts(i)) kept.push_back(rows[size_t(j) * n + i]);
    }
  for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
    for (const int method : {KOB_SS_FAST, KOB_SS_ONE_PASS})
      for (const int estimates : {moments, everything})
        for (const int workers : {1, 6}) {
          BasicTask<T> all(p, n, storage, stored(rows, p, n, storage), w.data());
          BasicTask<T> some(p, int(kept.size()) / p, storage, stored(kept, p, int(kept.size()) / p, storage));
          ASSERT_EQ(all.compute(estimates, method, workers), 0);
          ASSERT_EQ(some.compute(estimates, method), 0);
          const double tolerance = sizeof(T) == 8 ? 1e-11 : 1e-3;
          for (int j = 0; j < p; ++j) {
            ASSERT_NEAR(all.mean[j] / some.mean[j], 1, tolerance) << workers;
            for (int k = 2; k <= 4; k += 2)
              ASSERT_NEAR(all.central[k][j] / some.central[k][j], 1, tolerance) << workers;
          }
        }
}

TEST(BasicFixed, SmallCountsRunOnOneWorker) {
  BasicTask<double> t(1, 999, KOB_SS_ROWS, std::vector<double>(999, 2.));
  ASSERT_EQ(t.compute(KOB_SS_MEAN, KOB_SS_FAST, 64), 0);
  EXPECT_EQ(Threads::last_asked, 1);
}

// The univariate series NumAcc1 to NumAcc4 of the NIST Statistical Reference Datasets, from their definition.
// The certified mean and deviation are exact; the digits that the data themselves carry in binary bound what
// can be had.
TEST(BasicFixed, NistNumAcc) {
  const auto alternating = [](double middle) {
    std::vector<double> x = {middle};
    for (int i = 0; i < 500; ++i) x.insert(x.end(), {middle - 0.1, middle + 0.1});
    return x;
  };
  const struct {
    const char* name;
    std::vector<double> x;
    double mean, deviation, digits, fast_digits;  // those of the deviation
  } series[] = {
      {"NumAcc1", {10000001, 10000003, 10000002}, 10000002, 1, 15, 2},
      {"NumAcc2", alternating(1.2), 1.2, 0.1, 14.5, 12.4},
      {"NumAcc3", alternating(1000000.2), 1000000.2, 0.1, 9.6, 1.7},
      {"NumAcc4", alternating(10000000.2), 10000000.2, 0.1, 8.4, -1},
  };
  const auto digits = [](double got, double right) {
    return got == right ? 17 : -std::log10(std::abs(got - right) / std::abs(right));
  };
  for (const auto& s : series)
    for (const int method : {KOB_SS_FAST, KOB_SS_ONE_PASS, KOB_SS_USER_MEAN}) {
      const bool fast = method == KOB_SS_FAST;
      BasicTask<double> t(1, int(s.x.size()), KOB_SS_ROWS, s.x);
      t.mean[0] = s.mean;
      ASSERT_EQ(t.compute(KOB_SS_CENTRAL_MOMENT_2, method), 0);
      EXPECT_GE(digits(t.mean[0], s.mean), fast ? 14.6 : 15) << s.name;
      EXPECT_GE(digits(std::sqrt(t.central[2][0]), s.deviation), fast ? s.fast_digits : s.digits) << s.name;
    }
}

// Where the data carry their moments at all, one pass gives them to the last few units, however far they lie from 0,
// in one call or in workers' parts, over many blocks and over few.
TEST(BasicFixed, OnePassAtLargeOffsets) {
  std::mt19937_64 random(6);
  std::uniform_real_distribution<double> uniform;
  const auto units = [](double got, const Mp& want) {
    return double(abs(Mp(got) - want) / abs(want)) / std::numeric_limits<double>::epsilon();
  };
  for (const double offset : {0., 1e3, 1e6, -1e9, 1e12})
    for (const int n : {3, 200, 5000, 70001})
      for (const bool trend : {false, true}) {
        const int p = 3;
        std::vector<double> x(size_t(p) * n);
        for (size_t i = 0; i < x.size(); ++i) {
          const double u = uniform(random);
          x[i] = offset + (trend ? double(i % n) / n + 0.1 * u * u : u * u);
        }
        const Judge<double> right(x, nullptr, p);
        for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
          for (const int workers : {1, 3})
            for (const int estimates : {moments, everything}) {
              BasicTask<double> t(p, n, storage, stored(x, p, n, storage));
              ASSERT_EQ(t.compute(estimates, KOB_SS_ONE_PASS, workers), 0);
              for (int j = 0; j < p; ++j) {
                const Moments& m = right.moments[j];
                const std::string at = std::to_string(offset) + " n " + std::to_string(n) + " workers " +
                                       std::to_string(workers) + (trend ? " trend" : "") + " storage " +
                                       std::to_string(storage) + " estimates " + std::to_string(estimates) +
                                       " variable " + std::to_string(j);
                EXPECT_LE(units(t.mean[j], m.mean), 2) << at;
                EXPECT_LE(units(t.central[2][j], m.central[2]), 10) << at;
                EXPECT_LE(units(t.central[4][j], m.central[4]), 10) << at;
                EXPECT_LE(double(abs(Mp(t.central[3][j]) - m.central[3]) / m.spread[3]), 2.2e-15) << at;
                if (estimates == everything) {
                  EXPECT_LE(units(t.cov[j * p + j], right.covariance[j * p + j]), 30) << at;
                }
              }
            }
      }
}

// The first observations lie far from all others: what is summed about them must not cancel.
TEST(BasicFixed, OnePassAfterAFarStart) {
  const int n = 20000;
  std::mt19937_64 random(8);
  std::normal_distribution<double> normal;
  for (const int far : {1, 150, 3000}) {
    std::vector<double> x(n);
    for (int i = 0; i < n; ++i) x[i] = normal(random) + (i < far ? 1e9 : 0);
    const Judge<double> right(x, nullptr, 1);
    BasicTask<double> t(1, n, KOB_SS_ROWS, x);
    ASSERT_EQ(t.compute(moments, KOB_SS_ONE_PASS), 0);
    for (int k = 2; k <= 4; ++k)
      EXPECT_LE(double(abs(Mp(t.central[k][0]) - right.moments[0].central[k]) / right.moments[0].spread[k]),
                1e-13)
          << far << " order " << k;
  }
}

// Skewness, kurtosis and correlation have no scale: data whose variance cubed or whose product of variances is out of
// range give the same numbers.
TYPED_TEST(Basic, ScaledData) {
  using T = TypeParam;
  const int p = 2, n = 50;
  const std::vector<T> rows = this->data(p, n);
  for (const int method : this->methods) {
    std::vector<T> kurtosis, skewness, correlation;
    for (const int scale : {0, sizeof(T) == 8 ? 200 : 25, sizeof(T) == 8 ? -200 : -25}) {
      std::vector<T> x = rows;
      for (T& v : x) v = T(std::ldexp(v, scale));
      BasicTask<T> t(p, n, KOB_SS_ROWS, x);
      const Judge<T> right(x, nullptr, p);
      if (method == KOB_SS_USER_MEAN) this->give_mean(t, right);
      ASSERT_EQ(t.compute(moments, method), 0);
      if (scale == 0) kurtosis = t.kurtosis, skewness = t.skewness;
      EXPECT_EQ(t.kurtosis, kurtosis) << method << ' ' << scale;
      EXPECT_EQ(t.skewness, skewness) << method << ' ' << scale;
    }
    for (const int scale : {0, sizeof(T) == 8 ? 300 : 40, sizeof(T) == 8 ? -300 : -40}) {
      std::vector<T> x = rows;
      for (T& v : x) v = T(std::ldexp(v, scale));
      BasicTask<T> t(p, n, KOB_SS_ROWS, x);
      const Judge<T> right(x, nullptr, p);
      if (method == KOB_SS_USER_MEAN) this->give_mean(t, right);
      ASSERT_EQ(t.compute(KOB_SS_CORRELATION, method), 0);
      if (scale == 0) correlation = t.cor;
      EXPECT_EQ(t.cor[1], correlation[1]) << method << ' ' << scale;
    }
  }
}

// A negative weight enters the formulas of every method as it is.
TYPED_TEST(Basic, NegativeWeights) {
  using T = TypeParam;
  const int p = 3, n = 90;
  const std::vector<T> rows = this->data(p, n);
  std::vector<T> w = this->weights(n);
  for (int i = 5; i < n; i += 17) w[i] = T(-0.25);
  const Judge<T> right(rows, w.data(), p);
  for (const int method : this->methods) {
    BasicTask<T> t(p, n, KOB_SS_COLUMNS, stored(rows, p, n, KOB_SS_COLUMNS), w.data());
    if (method == KOB_SS_USER_MEAN) this->give_mean(t, right);
    ASSERT_EQ(t.compute(everything, method), 0);
    this->check(t, right, method);
  }
}

#if defined(__x86_64__)
// The greatest count: 8 GB of zeros, of which the system keeps one page.
TEST(BasicFixed, GreatestCount) {
  const size_t bytes = size_t(INT32_MAX) * sizeof(float);
  void* zeros = mmap(nullptr, bytes, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (zeros == MAP_FAILED) GTEST_SKIP() << "no address space";
  const int p = 1, n = INT32_MAX, storage = KOB_SS_ROWS;
  float mean = -77;
  SSTask* task;
  ASSERT_EQ(__kobsSSNewTask(&task, &p, &n, &storage, static_cast<const float*>(zeros), nullptr, nullptr, 0),
            0);
  __kobsSSEditTask(task, KOB_SS_ID_MEAN, &mean);
  EXPECT_EQ(_kobsSSBasic(task, KOB_SS_MEAN, KOB_SS_ONE_PASS, Threads::table(2)), 0);
  EXPECT_EQ(mean, 0.f);
  __kobSSDeleteTask(&task);
  munmap(zeros, bytes);
}
#endif

TYPED_TEST(Basic, Statuses) {
  using T = TypeParam;
  const std::vector<T> x(6, T(1));
  const struct {
    int estimate;
    std::vector<int> arrays;  // ids, in the order in which their absence is told
  } needs[] = {
      {KOB_SS_MEAN, {7}},
      {KOB_SS_RAW_MOMENT_2, {8}},
      {KOB_SS_RAW_MOMENT_3, {9}},
      {KOB_SS_RAW_MOMENT_4, {10}},
      {KOB_SS_CENTRAL_MOMENT_2, {7, 8, 11}},
      {KOB_SS_CENTRAL_MOMENT_3, {7, 8, 9, 12}},
      {KOB_SS_CENTRAL_MOMENT_4, {7, 8, 9, 10, 13}},
      {KOB_SS_COVARIANCE, {7, 19}},
      {KOB_SS_CORRELATION, {7, 21}},
      {KOB_SS_KURTOSIS, {7, 8, 9, 10, 11, 13, 14}},
      {KOB_SS_SKEWNESS, {7, 8, 9, 11, 12, 15}},
      {KOB_SS_VARIATION, {7, 8, 11, 18}},
  };
  const auto status_of = [](int id) {
    if (id <= 15) return -4006 - (id - 7);
    return id == 18 ? -4017 : id == 19 ? -4018 : -4019;
  };
  const int full = KOB_SS_FULL;
  for (const auto& need : needs) {
    std::vector<T> result(9, T(-77));
    Task<T> t(3, 2, KOB_SS_ROWS, x);
    t.set(KOB_SS_ID_COVARIANCE_STORAGE, &full);
    t.set(KOB_SS_ID_CORRELATION_STORAGE, &full);
    const auto call = [&](int method) {
      return Api<T>::basic(t.task, need.estimate, method, Threads::table(1));
    };
    for (const int id : need.arrays) {
      EXPECT_EQ(call(KOB_SS_FAST), status_of(id)) << need.estimate;
      EXPECT_EQ(call(0), status_of(id));  // arrays are looked at before the method
      t.set(id, result.data());
    }
    for (const int method : {0x0, 0x3, 0x101, 0x102, 0x103, 0x40}) EXPECT_EQ(call(method), -4029) << method;
    EXPECT_EQ(result, std::vector<T>(9, T(-77)));
  }
}

// A call that fails for lack of memory leaves earlier results as they were, so that it can be made again.
TYPED_TEST(Basic, EveryAllocationFailing) {
  using T = TypeParam;
  const int p = 4, n = 3000, indices[p] = {1, 1, 0, 1};
  const std::vector<T> rows = this->data(p, n), w = this->weights(n);
  Threads::arrange = [](std::vector<int>&) {};
  int most = 0;
  for (const int method : this->methods)
    for (const T* weights : {static_cast<const T*>(nullptr), w.data()})
      for (const int* mask : {static_cast<const int*>(nullptr), indices}) {
        BasicTask<T> t(p, n, KOB_SS_COLUMNS, rows, weights, mask);
        ASSERT_EQ(t.compute(everything, method, 1), 0);
        const BasicTask<T>& now = t;
        const std::vector<T> mean = now.mean, central = now.central[4], cov = now.cov;
        const int count = fail_each_allocation([&] { return t.compute(everything, method, 3); },
                                               [&](int status) {
                                                 EXPECT_EQ(status, -4000);
                                                 EXPECT_EQ(now.mean, mean);
                                                 EXPECT_EQ(now.central[4], central);
                                                 EXPECT_EQ(now.cov, cov);
                                               });
        most = std::max(most, count);
      }
  EXPECT_GE(most, 4);  // workers, products, means and weighted blocks
}

}  // namespace
