// Moments, covariance and correlation against a computation in 600 bits; blocks, workers, weights, statuses.
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

int packed(int storage, int p, int i, int j) {
  if (storage == KOB_SS_FULL) return i * p + j;
  if (storage == KOB_SS_LOWER_PACKED) return i * (i + 1) / 2 + j;  // j <= i
  return i * p - i * (i - 1) / 2 + j - i;                          // j >= i
}

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
          return storage == KOB_SS_UPPER_PACKED ? a[packed(storage, p, k, j)] : a[packed(storage, p, j, k)];
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

}  // namespace
