// Outlier detection by BACON.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

#include "out_detect/cycle.hpp"
#include "real_data.hpp"

namespace {

template <class T>
struct OutlierTask : Task<T> {
  std::vector<T> weights, params;
  int param_count = 3;

  OutlierTask(int p, int n, int storage, const std::vector<double>& rows, std::vector<T> parameters = {},
              const T* given = nullptr)
      : Task<T>(p, n, storage, stored(in_precision<T>(rows), p, n, storage), given),
        weights(n, T(-7)),
        params(std::move(parameters)) {
    Api<T>::edit_outliers(this->task, &param_count, params.empty() ? nullptr : params.data(), weights.data());
  }
  int compute(int workers = 3) {
    return Api<T>::outliers(this->task, 0, KOB_SS_BACON, Threads::table(workers));
  }
  std::vector<int> outliers() const {
    return observations_where(this->n, [&](int i) { return weights[i] == 0; });
  }
};

template <class T>
struct Outliers : testing::Test {};
TYPED_TEST_SUITE(Outliers, Precisions);

std::vector<int> first(int count) {
  std::vector<int> v(count);
  std::iota(v.begin(), v.end(), 1);
  return v;
}

// Hawkins, Bradu and Kass 1984: 1 to 14 are the outliers in the explanatory variables. BACON with alpha = 0.05 and
// its start from medians finds them (Billor, Hadi and Velleman 2000, section 5).
TYPED_TEST(Outliers, OfHawkinsBraduAndKass) {
  using T = TypeParam;
  const std::vector<double> rows = read_rows("hbk.csv", 3);
  for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
    for (const T alpha : {T(0.05), T(0.01), T(0.001)}) {
      OutlierTask<T> t(3, 75, storage, rows, {2, alpha, T(0.005)});
      ASSERT_EQ(t.compute(), 0);
      EXPECT_EQ(t.outliers(), first(14)) << alpha;
    }
}

// A fifth of the data far away, in a cluster or all around. Of the others the corrected cut leaves out about alpha.
TYPED_TEST(Outliers, OfContaminatedData) {
  using T = TypeParam;
  const struct {
    Contaminated data;
    int start;
  } cases[] = {{{4, 3000, 600, 40, 0.5}, 2},
               {{4, 3000, 600, 0, 100}, 2},
               {{10, 2000, 400, 30, 1}, 2},
               {{1, 400, 80, 30, 1}, 2},
               {{3, 3000, 90, 40, 1}, 1}};
  for (const auto& c : cases)
    for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS}) {
      OutlierTask<T> t(c.data.p, c.data.n, storage, c.data.rows(), {T(c.start), T(0.01), T(0.005)});
      ASSERT_EQ(t.compute(), 0);
      const std::vector<int> found = t.outliers();
      const int missed = c.data.outliers - int(std::count_if(found.begin(), found.end(),
                                                             [&](int i) { return i <= c.data.outliers; }));
      // Wide outliers may lie near the centre by chance.
      EXPECT_LE(missed, c.data.spread > 1 ? 0.06 * c.data.outliers : 0) << c.data.p;
      const double wrong =
          double(int(found.size()) - c.data.outliers + missed) / (c.data.n - c.data.outliers);
      EXPECT_LT(wrong, 0.04) << c.data.p;
    }
}

TYPED_TEST(Outliers, ParametersAndThreads) {
  using T = TypeParam;
  const Contaminated data = {5, 4000, 300, 20, 1};
  const std::vector<double> rows = data.rows();
  OutlierTask<T> standard(5, 4000, KOB_SS_ROWS, rows);
  ASSERT_EQ(standard.compute(), 0);
  const T nan = std::numeric_limits<T>::quiet_NaN();
  // Values out of their ranges stand for the defaults, and so do parameters of another number.
  for (const std::vector<T>& params :
       {std::vector<T>{2, T(0.05), T(0.005)}, {7, -1, 0}, {nan, nan, nan}, {0, 2, -3}}) {
    OutlierTask<T> t(5, 4000, KOB_SS_ROWS, rows, params);
    ASSERT_EQ(t.compute(), 0);
    EXPECT_EQ(t.outliers(), standard.outliers());
  }
  OutlierTask<T> other(5, 4000, KOB_SS_ROWS, rows, {1, T(0.3), T(0.005)});
  other.param_count = 4;
  ASSERT_EQ(other.compute(1), 0);
  EXPECT_EQ(other.outliers(), standard.outliers());
  other.param_count = 3;
  ASSERT_EQ(other.compute(1), 0);
  EXPECT_GT(other.outliers().size(), standard.outliers().size() + 500);

  const std::vector<T> ones(4000, T(1));
  for (const int start : {1, 2}) {
    OutlierTask<T> with(5, 4000, KOB_SS_COLUMNS, rows, {T(start), T(0.05), T(0.005)}, ones.data());
    OutlierTask<T> without(5, 4000, KOB_SS_COLUMNS, rows, {T(start), T(0.05), T(0.005)});
    ASSERT_EQ(with.compute(), 0);
    ASSERT_EQ(without.compute(), 0);
    EXPECT_EQ(with.weights, without.weights);
  }
}

// The start is the same whatever the number of workers, also where a share has fewer observations than the start wants.
TYPED_TEST(Outliers, StartOfManyWorkers) {
  using T = TypeParam;
  const Contaminated data = {40, 400, 40, 30, 1};
  OutlierTask<T> one(40, 400, KOB_SS_ROWS, data.rows()), many(40, 400, KOB_SS_ROWS, data.rows());
  ASSERT_EQ(one.compute(1), 0);
  ASSERT_EQ(many.compute(7), 0);
  EXPECT_EQ(one.weights, many.weights);
  EXPECT_EQ(observations_where(40, [&](int i) { return one.weights[i] == 0; }), first(40));
}

// Weights go to the results, and an observation of weight 0 counts for nothing.
TYPED_TEST(Outliers, KeepTheWeights) {
  using T = TypeParam;
  const Contaminated data = {3, 1000, 100, 30, 1};
  std::vector<T> given(1000);
  for (int i = 0; i < 1000; ++i) given[i] = T(i % 4) / 2;
  OutlierTask<T> t(3, 1000, KOB_SS_ROWS, data.rows(), {}, given.data());
  ASSERT_EQ(t.compute(), 0);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(t.weights[i], 0) << i;
  int kept = 0;
  for (int i = 100; i < 1000; ++i) {
    EXPECT_TRUE(t.weights[i] == given[i] || t.weights[i] == 0) << i;
    kept += t.weights[i] == given[i];
  }
  EXPECT_GT(kept, 700);
}

// From Mahalanobis distances on, any linear map of the data gives the same outliers.
TEST(OutliersFixed, AreAffine) {
  const Contaminated data = {4, 800, 60, 15, 1};
  const std::vector<double> rows = data.rows();
  const double map[4][4] = {{2, 1, 0, -1}, {0, 3, 1, 1}, {-1, 0, 0.5, 2}, {1, 1, 1, 7}};
  std::vector<double> mapped(rows.size());
  for (int j = 0; j < 4; ++j)
    for (int i = 0; i < 800; ++i) {
      mapped[j * 800 + i] = 1000 * j;
      for (int k = 0; k < 4; ++k) mapped[j * 800 + i] += map[j][k] * rows[k * 800 + i];
    }
  OutlierTask<double> t(4, 800, KOB_SS_ROWS, rows, {1, 0.05, 0.005}),
      u(4, 800, KOB_SS_ROWS, mapped, {1, 0.05, 0.005});
  ASSERT_EQ(t.compute(), 0);
  ASSERT_EQ(u.compute(), 0);
  EXPECT_EQ(t.outliers(), u.outliers());
  EXPECT_GE(t.outliers().size(), 60u);
}

// What the told cut costs of clean data.
TEST(OutliersFixed, OfCleanData) {
  for (const int p : {2, 5, 10}) {
    const Contaminated data = {p, 20000, 0, 0, 1};
    OutlierTask<double> t(p, data.n, KOB_SS_ROWS, data.rows());
    ASSERT_EQ(t.compute(), 0);
    const double kept = 1 - double(t.outliers().size()) / data.n;
    EXPECT_GT(kept, 0.80) << p;
    EXPECT_LT(kept, 0.96) << p;
  }
}

TYPED_TEST(Outliers, Statuses) {
  using T = TypeParam;
  const int p = 2, full_rows = KOB_SS_ROWS, both = KOB_SS_ROWS | KOB_SS_COLUMNS;
  const std::vector<double> rows = Contaminated{p, 30, 0, 0, 1}.rows();
  std::vector<T> x = in_precision<T>(rows), weights(30);
  int n = 9;
  Task<T> t(p);
  const auto call = [&] { return Api<T>::outliers(t.task, 0, KOB_SS_BACON, Threads::table(2)); };
  mend<T>(t, call, {{-4002, KOB_SS_ID_OBSERVATION_COUNT, &n}, {-4002, KOB_SS_ID_OBSERVATION_COUNT, &n}});
  n = 30;
  mend<T>(t, call,
          {{-4003, KOB_SS_ID_OBSERVATION_STORAGE, &both},
           {-4003, KOB_SS_ID_OBSERVATION_STORAGE, &full_rows},
           {-4032, KOB_SS_ID_OBSERVATIONS, x.data()},
           {-4041, KOB_SS_ID_OUTLIER_WEIGHTS, weights.data()}});
  EXPECT_EQ(Api<T>::outliers(t.task, 0, ~KOB_SS_BACON, nullptr), -4029);
  EXPECT_EQ(call(), 0);
  // With 5p observations there can be no larger subset.
  n = 10;
  EXPECT_EQ(call(), -4026);
}

TYPED_TEST(Outliers, OfDataThatTellNothing) {
  using T = TypeParam;
  const int n = 60;
  for (const int p : {1, 2, 3, 5})
    for (const int start : {1, 2}) {
      const std::vector<T> params = {T(start), T(0.05), T(0.005)};
      // All equal.
      OutlierTask<T> equal(p, n, KOB_SS_ROWS, std::vector<double>(p * n, 2.5), params);
      EXPECT_EQ(without_loss([&] { return equal.compute(); }), -4033) << p;
      // A NaN.
      std::vector<double> rows = Contaminated{p, n, 0, 0, 1}.rows();
      rows[7] = NAN;
      OutlierTask<T> spoiled(p, n, KOB_SS_ROWS, rows, params);
      const int spoiled_status = without_loss([&] { return spoiled.compute(); });
      EXPECT_TRUE(spoiled_status == -4033 || (start == 2 && spoiled.weights[7] == 0)) << spoiled_status;
      // A constant variable is regularised, if its eigenvalue is not above 0 by rounding.
      if (p < 3) continue;
      rows = Contaminated{p, n, 6, 50, 1}.rows();
      for (int i = 0; i < n; ++i) rows[n + i] = 3;
      OutlierTask<T> constant(p, n, KOB_SS_ROWS, rows, {2, T(0.01), T(0.005)});
      const int status = without_loss([&] { return constant.compute(); });
      EXPECT_TRUE(status == 0 || status == -5041) << status;
      if (status == 0) {
        EXPECT_LE(6u, constant.outliers().size());
      }
    }
}

TYPED_TEST(Outliers, Allocations) {
  using T = TypeParam;
  const Contaminated data = {4, 200, 20, 30, 1};
  const std::vector<T> ones(200, T(1));
  for (const T* given : {static_cast<const T*>(nullptr), ones.data()})
    for (const int start : {1, 2}) {
      OutlierTask<T> t(4, 200, KOB_SS_ROWS, data.rows(), {T(start), T(0.05), T(0.005)}, given);
      EXPECT_GT(
          fail_each_allocation([&] { return t.compute(); }, [](int status) { EXPECT_EQ(status, -4000); }), 8);
    }
}

// Sequences that enter a circle after some steps stop at its largest set, whichever it is.
// The rounds for one variable, from the five numbers nearest to the median, until the size of the subset stays or a
// subset comes back: then the largest of those since. Which are kept; none where a subset has no deviation.
std::vector<bool> kept_of_one_variable(const std::vector<double>& x, double chi, bool* cycle) {
  const int n = int(x.size());
  std::vector<double> sorted = x, far(n);
  std::sort(sorted.begin(), sorted.end());
  const double median = (sorted[(n - 1) / 2] + sorted[n / 2]) / 2;
  for (int i = 0; i < n; ++i) far[i] = std::abs(x[i] - median);
  std::vector<double> nearest = far;
  std::sort(nearest.begin(), nearest.end());
  std::vector<bool> kept(n);
  for (int i = 0; i < n; ++i) kept[i] = far[i] <= nearest[4];
  const auto size_of = [](const std::vector<bool>& set) {
    return int(std::count(set.begin(), set.end(), true));
  };
  std::vector<std::vector<bool>> seen;
  for (;;) {
    const int r = size_of(kept);
    double mean = 0, square = 0;
    for (int i = 0; i < n; ++i) mean += kept[i] ? x[i] / r : 0;
    for (int i = 0; i < n; ++i) square += kept[i] ? (x[i] - mean) * (x[i] - mean) / (r - 1) : 0;
    if (!(square > 0)) return {};
    const double h = (n + 2) / 2.0;
    const double cut = (std::max(0.0, (h - r) / (h + r)) + 1 + 2.0 / (n - 1) + 2.0 / (n - 4)) * chi;
    for (int i = 0; i < n; ++i) kept[i] = std::abs(x[i] - mean) < cut * std::sqrt(square);
    const int now = size_of(kept);
    if (now == r || now == n || now == 0) return kept;
    const auto before = std::find(seen.begin(), seen.end(), kept);
    if (before != seen.end()) {
      *cycle = true;
      return *std::max_element(before, seen.end(),
                               [&](const auto& a, const auto& b) { return size_of(a) < size_of(b); });
    }
    seen.push_back(kept);
  }
}

// Small samples with heavy tails, where much lies next to a cut; a large alpha makes some go in circles.
TEST(OutliersFixed, RoundsOfOneVariable) {
  std::mt19937 random(1);
  int cycles = 0;
  for (int sample = 0; sample < 20000; ++sample) {
    const bool large = sample % 2;
    std::vector<double> x(size_t(8 + sample % 32));
    for (double& v : x) v = std::tan(3.14 * (random() * 0x1p-32 - 0.5));
    bool cycle = false;
    const std::vector<bool> kept =
        kept_of_one_variable(x, large ? 0.6744897501960817 : 1.959963984540054, &cycle);
    if (kept.empty()) continue;
    const bool told = std::count(kept.begin(), kept.end(), true) > 5;
    OutlierTask<double> t(1, int(x.size()), KOB_SS_ROWS, x, {2, large ? 0.5 : 0.05, 1e-9});
    ASSERT_EQ(t.compute(1), told ? 0 : KOB_SS_ERROR_NO_SUBSET);
    for (size_t i = 0; i < x.size(); ++i) ASSERT_EQ(t.weights[i], double(kept[i])) << sample;
    cycles += cycle;
  }
  EXPECT_GT(cycles, 0);
}

TEST(OutliersFixed, CyclesStop) {
  for (const int before : {0, 1, 5, 40})
    for (const int length : {1, 2, 3, 7, 19})
      for (int largest = 0; largest < length; ++largest) {
        orx::ss::out_detect::Cycle cycle;
        int step = 0, place = 0, size = 0;
        do {
          ASSERT_LT(step, 10 * (before + length) + 10);
          place = step < before ? -1 - step : (step - before) % length;
          size = place < 0 ? 1000 : place == largest ? 50 : 20;
          ++step;
        } while (!cycle.stops_at(uint64_t(place) + 77, size));
        EXPECT_EQ(place, largest) << before << ' ' << length;
      }
}

}  // namespace
