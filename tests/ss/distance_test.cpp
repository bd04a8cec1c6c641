// Chi-square law, rank of a covariance, Mahalanobis distances, repair of a correlation, weighted medians.
#include <cmath>
#include <limits>
#include <numeric>

#include "mp.hpp"
#include "orx/kob.h"
#include "ss_test.hpp"

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
const double not_a_number = std::numeric_limits<double>::quiet_NaN();

// ---- the chi-square law ----

#include "chi_square.inc"

void relative(double got, double want, double bound, int k, double x) {
  EXPECT_LE(std::abs(got - want), bound * std::abs(want))
      << got << " for " << want << ", k " << k << ", " << x;
}

TEST(ChiSquare, Law) {
  for (const auto& row : kLaw) {
    relative(__kobdChi2CDF(row.k, row.x), row.lower, 4e-16, row.k, row.x);
    relative(__kobdChi2PDF(row.k, row.x), row.density, 4e-16, row.k, row.x);
    // The argument is as far from the quantile of the tail as its last bit tells.
    if (row.lower < 1 && row.lower > 0) {
      const double unit = std::numeric_limits<double>::epsilon();
      const double x = __kobdChi2ICDF(row.k, row.lower);
      EXPECT_LE(std::abs(x - row.x), unit * (row.x + row.lower / row.density)) << row.k << ' ' << row.x;
    }
  }
}

TEST(ChiSquare, Quantiles) {
  for (const auto& row : kQuantiles) relative(__kobdChi2ICDF(row.k, row.P), row.x, 4e-16, row.k, row.P);
}

TEST(ChiSquare, Ends) {
  EXPECT_EQ(__kobdChi2ICDF(3, 1), infinity);
  EXPECT_EQ(__kobdChi2ICDF(3, 0), 0);
  for (const double P : {-0.1, 1.1, not_a_number}) EXPECT_TRUE(std::isnan(__kobdChi2ICDF(3, P))) << P;
  EXPECT_TRUE(std::isnan(__kobdChi2ICDF(0, 0.5)));
  EXPECT_TRUE(std::isnan(__kobdChi2CDF(2, not_a_number)));
  EXPECT_TRUE(std::isnan(__kobdChi2PDF(2, not_a_number)));
  for (const double x : {0., -1., -infinity}) {
    EXPECT_EQ(__kobdChi2CDF(2, x), 0) << x;
    EXPECT_EQ(__kobdChi2PDF(2, x), 0) << x;
  }
  EXPECT_EQ(__kobdChi2CDF(2, infinity), 1);
  EXPECT_EQ(__kobdChi2PDF(2, infinity), 0);
  EXPECT_EQ(__kobdChi2CDF(0, 1.), 0);
}

TEST(ChiSquare, LnGamma) {
  for (double x = -30.3; x < 200; x += 0.171875) {
    mpfr_t v;
    int sign;
    mpfr_init2(v, 100);
    mpfr_set_d(v, x, MPFR_RNDN);
    mpfr_lgamma(v, &sign, v, MPFR_RNDN);
    const double want = mpfr_get_d(v, MPFR_RNDN);
    mpfr_clear(v);
    EXPECT_LE(std::abs(__kobdLGamma(x) - want), 3e-16 * std::max(std::abs(want), x < 0 ? 1. : 0.)) << x;
  }
  for (const double x : {1 + 1e-9, 1 - 1e-3, 2 + 1e-9, 2 - 1e-3})
    relative(__kobdLGamma(x), std::lgamma(x), 1e-15, 0, x);
  EXPECT_EQ(__kobdLGamma(1), 0);
  EXPECT_EQ(__kobdLGamma(2), 0);
  EXPECT_EQ(__kobdLGamma(infinity), infinity);
  EXPECT_EQ(__kobdLGamma(1e308), infinity);
  for (const double x : {0., -3., -infinity}) EXPECT_EQ(__kobdLGamma(x), infinity) << x;
  EXPECT_TRUE(std::isnan(__kobdLGamma(not_a_number)));
}

// ---- the rank of a covariance ----

TEST(Rank, OfOneVariance) {
  double a = 3;
  EXPECT_EQ(__kobdTestCovRank(1, &a), 0);
  EXPECT_EQ(a, 3);
  a = 0;
  EXPECT_EQ(__kobdTestCovRank(1, &a), 0);
  EXPECT_EQ(a, 1000 * std::numeric_limits<double>::denorm_min());
  for (const double bad : {-1e-300, -2., infinity, not_a_number}) {
    a = bad;
    EXPECT_EQ(__kobdTestCovRank(1, &a), -4033) << bad;
  }
}

// A matrix of known eigenvectors and eigenvalues -1, 4, 9; the identity; others.
TEST(Rank, Regularises) {
  const double q[3][3] = {{7, -4, -4}, {-4, 1, -8}, {-4, -8, 1}}, lambda[3] = {9, -1, 4};
  double a[9] = {}, identity[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1}, zero[9] = {},
         negative[9] = {-1, 0, 0, 0, -2, 0, 0, 0, -3};
  for (int k = 0; k < 3; ++k)
    for (int i = 0; i < 9; ++i) a[i] += lambda[k] * q[k][i / 3] * q[k][i % 3] / 81;
  const std::vector<double> before(a, a + 9);
  ASSERT_EQ(__kobdTestCovRank(3, a), 0);
  for (int j = 0; j < 3; ++j)
    for (int i = 0; i <= j; ++i) EXPECT_NEAR(a[j * 3 + i], before[j * 3 + i] + (i == j ? 0.04 : 0), 1e-14);
  ASSERT_EQ(__kobdTestCovRank(3, identity), 0);
  for (int j = 0; j < 3; ++j) EXPECT_EQ(identity[j * 4], 1);
  EXPECT_EQ(__kobdTestCovRank(3, zero), -4033);
  EXPECT_EQ(__kobdTestCovRank(3, negative), -4033);
  identity[1] = not_a_number;
  EXPECT_EQ(__kobdTestCovRank(3, identity), -4033);
  double regular[16] = {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 5};
  EXPECT_EQ(fail_each_allocation([&] { return __kobdTestCovRank(4, regular); },
                                 [](int status) { EXPECT_EQ(status, -4000); }),
            1);
}

// ---- Mahalanobis distances ----

template <class T>
struct Distance : testing::Test {
  std::mt19937_64 random{5};
  std::normal_distribution<double> normal;
};
TYPED_TEST_SUITE(Distance, Precisions);

// Any run of observations, with and without work areas of all sizes, against the form in 400 bits. The triangle that
// is not to be read holds NaN.
TYPED_TEST(Distance, OfRuns) {
  using T = TypeParam;
  for (const int p : {1, 2, 3, 7, 40}) {
    const int n = 61;
    std::vector<T> rows(size_t(p) * n), mean(p), inverse(size_t(p) * p, T(NAN));
    for (T& v : rows) v = T(3 + this->normal(this->random));
    for (T& v : mean) v = T(3 + 0.1 * this->normal(this->random));
    for (int j = 0; j < p; ++j)
      for (int i = 0; i <= j; ++i) inverse[j * p + i] = T(i == j ? 2 + j % 3 : 0.9 / (p + j - i));
    std::vector<double> want(n);
    for (int i = 0; i < n; ++i) {
      Mp sum;
      for (int j = 0; j < p; ++j)
        for (int k = 0; k < p; ++k)
          sum += (Mp(double(rows[j * n + i])) - double(mean[j])) *
                 double(inverse[std::max(j, k) * p + std::min(j, k)]) *
                 (Mp(double(rows[k * n + i])) - double(mean[k]));
      want[i] = double(sqrt(sum));
    }
    for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
      for (const int work_size : {0, 1, 2 * p, 7 * p + 1, 1000 * p})
        for (const int first : {0, 13}) {
          const int end = first == 0 ? n : 50;
          Task<T> t(p, n, storage, stored(rows, p, n, storage));
          std::vector<T> d(n + 1, T(-7)), work(work_size + 1, T(-7));
          ASSERT_EQ(Api<T>::edit_distances(t.task, &first, &end, mean.data(), inverse.data(), d.data(),
                                           work_size ? work.data() : nullptr, &work_size),
                    0);
          ASSERT_EQ(Api<T>::distances(t.task, KOB_SS_MAHALANOBIS_DISTANCE, 0, nullptr), 0);
          for (int i = first; i < end; ++i)
            ASSERT_NEAR(d[i - first], want[i], 20 * std::numeric_limits<T>::epsilon() * (1 + want[i]))
                << p << ' ' << i;
          EXPECT_EQ(d[end - first], T(-7));
          EXPECT_EQ(work[work_size], T(-7));
        }
  }
}

TYPED_TEST(Distance, Statuses) {
  using T = TypeParam;
  const T mean[2] = {0, 0}, inverse[4] = {1, 0, 0, 1};
  T d[3] = {-1, -1, -1};
  Task<T> t(2, 3, KOB_SS_COLUMNS, {3, 4, 0, 1, 5, 12});
  const auto call = [&] { return Api<T>::distances(t.task, 0, 0, nullptr); };
  EXPECT_EQ(call(), -4075);
  const int two = 2, three = 3, four = 4, negative = -1;
  Api<T>::edit_distances(t.task, nullptr, nullptr, mean, nullptr, d, nullptr, nullptr);
  EXPECT_EQ(call(), -4075);
  Api<T>::edit_distances(t.task, nullptr, nullptr, nullptr, inverse, nullptr, nullptr, nullptr);
  for (const auto& [first, end] :
       {std::pair(&negative, &two), std::pair(&three, &two), std::pair(&two, &four)}) {
    Api<T>::edit_distances(t.task, first, end, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(call(), -4075) << *first << ' ' << *end;
  }
  Api<T>::edit_distances(t.task, &two, &three, nullptr, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(fail_each_allocation(call, [](int status) { EXPECT_EQ(status, -4000); }), 1);
  EXPECT_EQ(d[0], T(13));
  EXPECT_EQ(d[1], T(-1));
}

// ---- the repair of a correlation ----

template <class T>
struct Parametrization : testing::Test {};
TYPED_TEST_SUITE(Parametrization, Precisions);

// Of [1 a a; a 1 -a; a -a 1] all is known: eigenvalues 1+a, 1+a, 1-2a with the eigenvector (1, -1, -1)/sqrt 3 of the
// last, which is lifted from below 0 to 1e-14.
TYPED_TEST(Parametrization, OfAllStorages) {
  using T = TypeParam;
  const int p = 3;
  const double a = 0.75;
  const double want[3][3] = {{1, .5, .5}, {.5, 1, -.5}, {.5, -.5, 1}};
  const double sign[3][3] = {{1, 1, 1}, {1, 1, -1}, {1, -1, 1}};
  for (const double value : {a, 0.25})
    for (int from = KOB_SS_FULL; from <= KOB_SS_UPPER_PACKED; ++from)
      for (int to = KOB_SS_FULL; to <= KOB_SS_UPPER_PACKED; ++to)
        for (const bool in_place : {false, true}) {
          if (in_place && from != KOB_SS_FULL && to == KOB_SS_FULL) continue;
          std::vector<T> cor(p * p, T(-9)), apart(p * p, T(-9));
          for (int i = 0; i < p; ++i)
            for (int j = 0; j < p; ++j) cor[packed(from, p, i, j)] = T(i == j ? 17 : value * sign[i][j]);
          std::vector<T>& result = in_place ? cor : apart;
          Task<T> t(p);
          t.set(KOB_SS_ID_CORRELATION, cor.data());
          t.set(KOB_SS_ID_CORRELATION_STORAGE, &from);
          t.set(KOB_SS_ID_PARAMETRIZED_CORRELATION, result.data());
          t.set(KOB_SS_ID_PARAMETRIZED_CORRELATION_STORAGE, &to);
          ASSERT_EQ(Api<T>::parametrize(t.task, 0, KOB_SS_SPECTRAL_DECOMPOSITION, nullptr), 0);
          for (int i = 0; i < p; ++i)
            for (int j = 0; j < p; ++j) {
              const double right = value == a ? want[i][j] : i == j ? 1 : value * sign[i][j];
              EXPECT_NEAR(result[packed(to, p, i, j)], right, 1e-14 + 8 * std::numeric_limits<T>::epsilon())
                  << from << to;
            }
        }
}

TYPED_TEST(Parametrization, Statuses) {
  using T = TypeParam;
  T cor[16] = {1, .9f, .9f, .9f, .9f, 1, -.9f, .9f, .9f, -.9f, 1, .9f, .9f, .9f, .9f, 1}, result[16];
  const int full = KOB_SS_FULL, lower = KOB_SS_LOWER_PACKED, bad = 3;
  Task<T> t(4);
  const auto call = [&] { return Api<T>::parametrize(t.task, 0, KOB_SS_SPECTRAL_DECOMPOSITION, nullptr); };
  mend<T>(t, call,
          {{-4019, KOB_SS_ID_CORRELATION, cor},
           {-4044, KOB_SS_ID_CORRELATION_STORAGE, &bad},
           {-4003, KOB_SS_ID_CORRELATION_STORAGE, &lower},
           {-4071, KOB_SS_ID_PARAMETRIZED_CORRELATION, cor},
           {-4044, KOB_SS_ID_PARAMETRIZED_CORRELATION_STORAGE, &bad},
           {-4003, KOB_SS_ID_PARAMETRIZED_CORRELATION_STORAGE, &full},
           {-4003, KOB_SS_ID_PARAMETRIZED_CORRELATION, result},
           {0, KOB_SS_ID_CORRELATION_STORAGE, &full}});
  EXPECT_EQ(Api<T>::parametrize(t.task, 0, ~KOB_SS_SPECTRAL_DECOMPOSITION, nullptr), -4029);
  EXPECT_EQ(fail_each_allocation(call, [](int status) { EXPECT_EQ(status, -4000); }), 1);
  cor[1] = cor[4] = T(NAN);
  EXPECT_EQ(call(), -5030);
}

// ---- weighted medians ----

template <class T>
struct WeightedMedian : testing::Test {
  // Of one variable.
  static T median(std::vector<T> x, std::vector<T> w, T q = T(0.5)) {
    const int n = int(x.size());
    T result = -77;
    Task<T> t(1, n, KOB_SS_ROWS, std::move(x), w.empty() ? nullptr : w.data());
    t.set(KOB_SS_ID_QUANTILE_ORDERS, &q);
    t.set(KOB_SS_ID_QUANTILES, &result);
    EXPECT_EQ(Api<T>::weighted_median(t.task, 0, 0, nullptr), 0);
    return result;
  }
};
TYPED_TEST_SUITE(WeightedMedian, Precisions);

TYPED_TEST(WeightedMedian, Walks) {
  using T = TypeParam;
  const auto median = [](auto... arguments) { return WeightedMedian<T>::median(arguments...); };
  const std::vector<T> four = {7, 1, 5, 3}, five = {9, 7, 1, 5, 3};
  EXPECT_EQ(median(four, std::vector<T>{}), T(4));
  EXPECT_EQ(median(four, std::vector<T>(4, T(0.1))), T(4));
  EXPECT_EQ(median(five, std::vector<T>{}), T(5));
  EXPECT_EQ(median(five, std::vector<T>(5, T(0.1))), T(5));
  EXPECT_EQ(median(four, std::vector<T>{1, 1, 1, 10}), T(1 + 5.5 / 10 * 2));  // passed at 3: from 1 on
  EXPECT_EQ(median(four, std::vector<T>{2, 1, 0, 1}), T(5));                  // met at 3, the next is 7
  EXPECT_EQ(median(four, std::vector<T>{1, 10, 1, 1}), T(1));                 // passed at the first
  EXPECT_EQ(median(five, std::vector<T>{1, 1, 2, 1, 1}), T(3));               // met, of an odd number
  EXPECT_EQ(median(four, std::vector<T>{1, 1, 1, 1}, T(1)), T(7));            // met at the last
  EXPECT_EQ(median(four, std::vector<T>{3, 1, 0, 1}, T(0.5)),
            T(3 + 0.5 / 3 * 4));  // one of weight 0 is passed over
  EXPECT_EQ(median(std::vector<T>{4}, std::vector<T>{2}), T(4));
  for (const int n : {10, 1000}) {  // half of the total is met exactly, though 0.1 is rounded
    std::vector<T> x(n);
    for (int i = 0; i < n; ++i) x[i] = T(i + 1);
    EXPECT_EQ(median(x, std::vector<T>(n, T(0.1))), T(n + 1) / 2);
  }
}

// The walk along all values in order, as it is told; weights are whole, so that sums are exact.
template <class T>
double walked(std::vector<std::pair<T, T>> x, double q) {
  std::sort(x.begin(), x.end());
  const int n = int(x.size());
  double total = 0, sum = 0;
  for (const auto& v : x) total += double(v.second);
  int i = -1;
  while (sum < total * q || i < 0) sum += double(x[++i].second);
  const double value = double(x[i].first), before = sum - double(x[i].second);
  int next = i + 1, previous = i - 1;
  while (next < n - 1 && x[next].second == 0) ++next;
  while (previous > 0 && x[previous].second == 0) --previous;
  if (sum == total * q) return n % 2 || i == n - 1 ? value : (value + double(x[next].first)) / 2;
  if (before == 0 || (n % 2 && before == (total - double(x[i].second)) * q)) return value;
  const double low = double(x[previous].first);
  return low + (total * q - before) / (sum - before) * (value - low);
}

TYPED_TEST(WeightedMedian, OfManyValues) {
  using T = TypeParam;
  std::mt19937_64 random(8);
  for (const int n : {99, 102, 1000, 1001, 20000})
    for (const int values : {3, 50, 100000})
      for (const int weights : {1, 2, 4}) {
        const int p = 2;
        std::vector<T> rows(size_t(p) * n), w(n), results(p);
        for (T& v : rows) v = T(random() % values);
        for (T& v : w) v = weights == 1 ? T(1) : T(random() % weights);
        for (const T q : {T(0), T(0.25), T(0.5), T(0.75), T(1)})
          for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS}) {
            Task<T> t(p, n, storage, stored(rows, p, n, storage), w.data());
            t.set(KOB_SS_ID_QUANTILE_ORDERS, &q);
            t.set(KOB_SS_ID_QUANTILES, results.data());
            ASSERT_EQ(Api<T>::weighted_median(t.task, 0, 0, nullptr), 0);
            for (int j = 0; j < p; ++j) {
              std::vector<std::pair<T, T>> x;
              for (int i = 0; i < n; ++i) x.emplace_back(rows[j * n + i], w[i]);
              // Of equal values it does not matter which of them reaches the sum, but where the next one differs.
              const double want = walked(x, double(q));
              if (q == 0) continue;
              EXPECT_NEAR(results[j], want, values <= 50 ? 1 : 1e-6 * (1 + want)) << n << ' ' << q;
            }
          }
      }
}

TYPED_TEST(WeightedMedian, Statuses) {
  using T = TypeParam;
  const T bad = T(1.5), good = T(0.5);
  T result;
  Task<T> t(1, 2, KOB_SS_ROWS, {1, 2});
  const auto call = [&] { return Api<T>::weighted_median(t.task, 0, 0, nullptr); };
  mend<T>(t, call,
          {{-4021, KOB_SS_ID_QUANTILE_ORDERS, &bad},
           {-4022, KOB_SS_ID_QUANTILE_ORDERS, &good},
           {-4023, KOB_SS_ID_QUANTILES, &result}});
  EXPECT_EQ(fail_each_allocation(call, [](int status) { EXPECT_EQ(status, -4000); }), 1);
  t.n = 0;
  EXPECT_EQ(call(), -4002);
}

}  // namespace
