// Imputation of missing values.
#include <cmath>
#include <limits>

#include "missing_vals/missing_vals.hpp"
#include "real_data.hpp"

namespace {

constexpr int method = KOB_SS_MULTIPLE_IMPUTATION, restored = method | KOB_SS_RESTORED_PRIOR;

template <class T>
struct ImputationTask : Task<T> {
  int missing = 0, imputations, rounds, param_count = 5, simul_count, estimate_count, init_count = 0,
      prior_count = 0;
  std::vector<T> params, simulated, estimates, init, prior;

  ImputationTask(int p, int n, int storage, const std::vector<double>& rows, int imputations_ = 5,
                 int rounds_ = 30, double accuracy = 0.001, int em_rounds = 50)
      : Task<T>(p, n, storage, stored(in_precision<T>(rows), p, n, storage)),
        imputations(imputations_),
        rounds(rounds_) {
    for (const double v : rows) missing += v != v && std::signbit(v);
    params = {T(em_rounds), T(rounds), T(accuracy), T(imputations), T(missing)};
    simul_count = imputations * missing;
    estimate_count = imputations * rounds * (p * (p + 3) / 2);
    simulated.assign(simul_count + 1, T(-7));
    estimates.assign(estimate_count + 1, T(-7));
  }
  int compute(int word = restored) {
    init_count = int(init.size());
    prior_count = int(prior.size());
    Api<T>::edit_missing(this->task, &param_count, params.data(), init.empty() ? nullptr : &init_count,
                         init.empty() ? nullptr : init.data(), prior.empty() ? nullptr : &prior_count,
                         prior.empty() ? nullptr : prior.data(), &simul_count, simulated.data(),
                         &estimate_count, estimates.data());
    const int status = Api<T>::impute(this->task, 0, word, nullptr);
    EXPECT_EQ(simulated.back(), T(-7));
    EXPECT_EQ(estimates.back(), T(-7));
    return status;
  }
  // The data with the values of an imputation, variable by variable.
  std::vector<double> completed(int imputation) const {
    std::vector<double> rows(this->x.size());
    int next = imputation * missing;
    for (int i = 0; i < this->n; ++i)
      for (int j = 0; j < this->p; ++j) {
        const T x = this->storage == KOB_SS_ROWS ? this->x[size_t(j) * this->n + i]
                                                 : this->x[size_t(i) * this->p + j];
        rows[size_t(j) * this->n + i] = double(x != x ? simulated[next++] : x);
      }
    return rows;
  }
  // Of estimate k of all rounds, over these: average and variance.
  std::pair<double, double> moments(int k) const {
    const int size = this->p * (this->p + 3) / 2, count = imputations * rounds;
    double sum = 0, squares = 0;
    for (int r = 0; r < count; ++r) sum += double(estimates[r * size + k]);
    for (int r = 0; r < count; ++r) squares += std::pow(double(estimates[r * size + k]) - sum / count, 2);
    return {sum / count, squares / (count - 1)};
  }
};

// x is normal about 3, y = 5 + 2 x + noise, y missing where `gone` says so.
std::vector<double> regression(int n, int seed, double noise, const std::function<bool(int, double)>& gone) {
  std::mt19937_64 random(seed);
  std::normal_distribution<double> normal;
  std::vector<double> rows(2 * n);
  for (int i = 0; i < n; ++i) {
    rows[i] = 3 + normal(random);
    rows[n + i] = 5 + 2 * rows[i] + noise * normal(random);
    if (gone(i, rows[i])) rows[n + i] = missing_value();
  }
  return rows;
}
bool every_third(int i, double) { return i % 3 == 0; }

// ---- EM ----

// Anderson, JASA 52 (1957): where y alone has gaps the likelihood factors; y's mean and variance are those of its
// regression on x, carried over to all x. Far from 0 and in small units, too.
TEST(ExpectationMaximisation, OfMonotoneData) {
  const int n = 300;
  for (const double scale : {1., 1e-3})
    for (const double offset : {0., 1e6}) {
      std::vector<double> rows = regression(n, 3, 1.5, [](int, double x) { return x > 3.6; });
      for (double& v : rows) v = v * scale + offset;
      double mx = 0, my = 0, sxx = 0, sxy = 0, syy = 0, all_mx = 0, all_sxx = 0;
      int count = 0;
      for (int i = 0; i < n; ++i) {
        all_mx += rows[i] / n;
        if (rows[n + i] != rows[n + i]) continue;
        ++count;
        mx += rows[i];
        my += rows[n + i];
      }
      mx /= count, my /= count;
      for (int i = 0; i < n; ++i) {
        all_sxx += (rows[i] - all_mx) * (rows[i] - all_mx) / n;
        if (rows[n + i] != rows[n + i]) continue;
        sxx += (rows[i] - mx) * (rows[i] - mx) / count;
        sxy += (rows[i] - mx) * (rows[n + i] - my) / count;
        syy += (rows[n + i] - my) * (rows[n + i] - my) / count;
      }
      const double slope = sxy / sxx;
      ImputationTask<double> t(2, n, KOB_SS_ROWS, rows, 1, 1, 1e-14 * scale * scale, 3000);
      ASSERT_EQ(t.compute(), 0);
      namespace mv = orx::ss::missing_vals;
      mv::Imputation<double> c(t.task, true);
      ASSERT_EQ(c.patterns.find(c.data), 0);
      ASSERT_TRUE(c.allocate());
      ASSERT_EQ(mv::_vEMPreprocessing(c), 0);
      ASSERT_EQ(mv::_vSSComputeEMMethod(c), 0);
      EXPECT_NEAR(c.theta(0, 1) + c.centre[0], all_mx, 1e-9 * scale + 1e-14 * offset);
      EXPECT_NEAR(c.theta(0, 2) + c.centre[1], my + slope * (all_mx - mx), 1e-7 * scale + 1e-14 * offset);
      const double unit = scale * scale * 1e-7;
      EXPECT_NEAR(c.theta(1, 1), all_sxx, unit);
      EXPECT_NEAR(c.theta(1, 2), slope * all_sxx, unit);
      EXPECT_NEAR(c.theta(2, 2), syy + slope * slope * (all_sxx - sxx), 10 * unit);
    }
}

TEST(ExpectationMaximisation, SweepsBack) {
  orx::ss::missing_vals::Parameters a, b;
  ASSERT_TRUE(a.allocate(3) && b.allocate(3));
  const double m[4][4] = {{-1, 2, 3, 4}, {2, 5, 1, 2}, {3, 1, 6, -1}, {4, 2, -1, 7}};
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j) a(i, j) = m[i][j];
  b.copy(a);
  b._vSSSweepOperator(1, -1);
  EXPECT_NEAR(b(1, 1), -0.2, 1e-15);  // minus the inverse of the swept part
  EXPECT_NEAR(b(1, 2), 0.2, 1e-15);   // the slope of 2 on 1
  EXPECT_NEAR(b(0, 2), 3 - 0.2 * 2, 1e-15);
  EXPECT_NEAR(b(2, 3), -1 - 1 * 0.2 * 2, 1e-15);
  b._vSSSweepOperator(3, -1);
  b._vSSSweepOperator(1, 1);
  b._vSSSweepOperator(3, 1);
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j) EXPECT_NEAR(b(i, j), m[i][j], 1e-13) << i << j;
}

// ---- data augmentation ----

template <class T>
struct MultipleImputation : testing::Test {};
TYPED_TEST_SUITE(MultipleImputation, Precisions);

// Both storages and every run give the same; both precisions up to rounding; in the order of the observations.
TYPED_TEST(MultipleImputation, IsTheSameEachTime) {
  using T = TypeParam;
  const int p = 4, n = 90;
  std::vector<double> rows = Contaminated{p, n, 0, 0, 1}.rows();
  std::mt19937_64 random(4);
  for (double& v : rows)
    if (random() % 5 == 0) v = missing_value();
  ImputationTask<T> t(p, n, KOB_SS_ROWS, rows), again(p, n, KOB_SS_COLUMNS, rows);
  ImputationTask<double> judge(p, n, KOB_SS_ROWS, rows);
  ASSERT_EQ(t.compute(), 0);
  ASSERT_EQ(again.compute(), 0);
  ASSERT_EQ(judge.compute(), 0);
  EXPECT_EQ(t.simulated, again.simulated);
  EXPECT_EQ(t.estimates, again.estimates);
  for (size_t k = 0; k < t.simulated.size(); ++k) EXPECT_NEAR(t.simulated[k], judge.simulated[k], 2e-3) << k;
  // Imputations are not copies of each other.
  for (int m = 1; m < t.imputations; ++m)
    for (int k = 0; k < t.missing; ++k) EXPECT_NE(t.simulated[k], t.simulated[m * t.missing + k]);
}

// Where the observed values tell nearly all, the imputed ones are near to what they were.
TYPED_TEST(MultipleImputation, FindsWhatIsTold) {
  using T = TypeParam;
  const int n = 200;
  const auto none = [](int, double) { return false; };
  const std::vector<double> whole = regression(n, 6, 0.05, none), rows = regression(n, 6, 0.05, every_third);
  for (const int word : {method, restored}) {
    ImputationTask<T> t(2, n, KOB_SS_COLUMNS, rows, 3, 20);
    ASSERT_EQ(t.compute(word), 0);
    for (int m = 0; m < 3; ++m) {
      const std::vector<double> completed = t.completed(m);
      for (int i = 0; i < 2 * n; ++i) EXPECT_NEAR(completed[i], whole[i], 0.35) << i;
    }
  }
}

// An observation of which all is missing says nothing: over the rounds mean and covariance have the posterior of the
// others, the covariance an inverted Wishart law with n - 1 + p degrees of freedom.
TEST(DataAugmentation, DrawsFromThePosterior) {
  const int p = 3, n = 40, rounds = 8000;
  std::vector<double> rows = Contaminated{p, n, 0, 0, 1}.rows();
  for (int j = 0; j < p; ++j) rows[j * n + 5] = missing_value();
  ImputationTask<double> t(p, n, KOB_SS_ROWS, rows, 1, rounds);
  ASSERT_EQ(t.compute(), 0);
  double mean[p] = {}, cov[p][p] = {};
  for (int j = 0; j < p; ++j)
    for (int i = 0; i < n; ++i) mean[j] += (i == 5 ? 0 : rows[j * n + i]) / (n - 1);
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < p; ++j)
      for (int k = 0; k < p; ++k)
        if (i != 5) cov[j][k] += (rows[j * n + i] - mean[j]) * (rows[k * n + i] - mean[k]) / (n - 2);
  for (int j = 0, at = p; j < p; ++j) {
    const auto [average, variance] = t.moments(j);
    EXPECT_NEAR(average, mean[j], 0.06 * std::sqrt(cov[j][j] / n));
    EXPECT_NEAR(variance / (cov[j][j] / (n - 1)), 1, 0.1);
    for (int k = j; k < p; ++k, ++at) {
      const auto [middle, spread] = t.moments(at);
      EXPECT_NEAR(middle / std::sqrt(cov[j][j] * cov[k][k]), cov[j][k] / std::sqrt(cov[j][j] * cov[k][k]),
                  0.015);
      // The variance of an element of an inverted Wishart matrix whose mean is `cov`, with f = n - 1 + p - p - 1.
      const double f = n - 2;
      const double want = ((f + 2) * cov[j][k] * cov[j][k] + f * cov[j][j] * cov[k][k]) / ((f + 1) * (f - 2));
      EXPECT_NEAR(spread / want, 1, 0.12) << j << k;
    }
  }
}

// Without restoring, the prior grows by the data in each round, and the draws vary less and less.
TEST(DataAugmentation, PriorThatGrows) {
  const std::vector<double> rows = regression(60, 9, 1, every_third);
  ImputationTask<double> t(2, 60, KOB_SS_ROWS, rows, 10, 100), u(2, 60, KOB_SS_ROWS, rows, 10, 100);
  ASSERT_EQ(t.compute(method), 0);
  ASSERT_EQ(u.compute(restored), 0);
  EXPECT_LT(t.moments(1).second, 0.2 * u.moments(1).second);
  EXPECT_NEAR(t.moments(1).first, u.moments(1).first, 1);
}

// Rubin 1987: the mean of y with its variance within and between imputations, over many samples.
struct Coverage {
  int samples = 0, covered = 0, imputations = 1;
  double error = 0, within = 0, between = 0, squares = 0;

  void add(const ImputationTask<double>& t, double truth) {
    const int n = t.n, m = t.imputations;
    std::vector<double> q(m);
    double u = 0, mean = 0, b = 0;
    for (int k = 0; k < m; ++k) {
      const std::vector<double> rows = t.completed(k);
      double sum = 0;
      for (int i = 0; i < n; ++i) q[k] += rows[n + i] / n;
      for (int i = 0; i < n; ++i) sum += std::pow(rows[n + i] - q[k], 2);
      u += sum / (n - 1) / n / m;
      mean += q[k] / m;
    }
    for (int k = 0; k < m; ++k) b += std::pow(q[k] - mean, 2) / (m - 1);
    const double total = u + (1 + 1. / m) * b;
    ++samples;
    imputations = m;
    covered += std::abs(mean - truth) < 1.96 * std::sqrt(total);
    error += mean - truth;
    squares += std::pow(mean - truth, 2);
    within += u;
    between += b;
  }
  double part() const { return double(covered) / samples; }
  double total() const { return within + (1 + 1. / imputations) * between; }
};

// Many imputations: all samples share the random numbers, so that their chances do not average out.
TEST(DataAugmentation, CoverageOfIntervals) {
  const int n = 80, samples = 500;
  Coverage told, textbook;
  for (int s = 0; s < samples; ++s) {
    // Missing at random: more often where x is large.
    const std::vector<double> rows =
        regression(n, 1000 + s, 3, [](int i, double x) { return i % 4 != 0 && (i % 4 == 1 || x > 2.8); });
    for (const int word : {method, restored}) {
      ImputationTask<double> t(2, n, KOB_SS_ROWS, rows, 40, 8);
      ASSERT_EQ(t.compute(word), 0);
      (word == method ? told : textbook).add(t, 11);
    }
  }
  std::printf(
      "coverage: told %.3f, textbook %.3f; between variance %.4f, %.4f; total against error %.3f, %.3f\n",
      told.part(), textbook.part(), told.between / samples, textbook.between / samples,
      told.total() / told.squares, textbook.total() / textbook.squares);
  EXPECT_NEAR(textbook.part(), 0.95, 0.025);
  EXPECT_NEAR(told.part(), 0.90, 0.04);
  EXPECT_LT(std::abs(textbook.error / samples), 0.06);
  // The variance that Rubin's rules tell is that of the estimate.
  EXPECT_NEAR(textbook.total() / textbook.squares, 1, 0.2);
}

// ---- real data ----

// Ozone, radiation, wind and temperature in New York, 1973: 37 and 7 days lack the first two.
TYPED_TEST(MultipleImputation, AirQuality) {
  using T = TypeParam;
  const int p = 4, n = 153;
  const std::vector<double> rows = read_rows("airquality.csv", p);
  ImputationTask<T> t(p, n, KOB_SS_ROWS, rows, 20, 30);
  EXPECT_EQ(t.missing, 44);
  ASSERT_EQ(t.compute(), 0);
  double ozone = 0;
  for (int m = 0; m < 20; ++m) {
    const std::vector<double> completed = t.completed(m);
    for (int i = 0; i < n; ++i) ozone += completed[i] / n / 20;
  }
  EXPECT_NEAR(ozone, 42.1, 2.5);  // of the observed days 42.13
}

// ---- patterns ----

TYPED_TEST(MultipleImputation, PatternsOfEveryKind) {
  using T = TypeParam;
  // More than 64 variables, missing on either side of the 64th; an observation of which all is missing.
  const int p = 70, n = 260;
  std::mt19937_64 random(12);
  std::normal_distribution<double> normal;
  std::vector<double> rows(size_t(p) * n);
  for (double& v : rows) v = normal(random);
  for (int i = 0; i < 40; ++i) rows[size_t(i % 2 ? 3 : 68) * n + i] = missing_value();
  for (int j = 0; j < p; ++j) rows[size_t(j) * n + 100] = missing_value();
  ImputationTask<T> wide(p, n, KOB_SS_COLUMNS, rows, 2, 3);
  EXPECT_EQ(wide.missing, 110);
  ASSERT_EQ(wide.compute(), 0);
  for (int k = 0; k < 2 * 110; ++k) EXPECT_LT(std::abs(wide.simulated[k]), 8) << k;
  orx::ss::missing_vals::Patterns patterns;
  const orx::ss::Observations<T> data(wide.task);
  ASSERT_EQ(patterns.find(data), 0);
  ASSERT_EQ(patterns.count(), 4);
  EXPECT_FALSE(patterns.is_observed(0, 68));
  EXPECT_TRUE(patterns.is_observed(0, 3));
  EXPECT_FALSE(patterns.is_observed(1, 3));
  EXPECT_EQ(patterns[0].count, 20);
  EXPECT_EQ(patterns[2].count, n - 41);
  EXPECT_EQ(patterns[3].observed, 0);
  EXPECT_EQ(patterns.position(100), 40);

  // Every observation has a gap; a variable that nobody has seen; a single variable.
  std::vector<double> gaps = Contaminated{3, 60, 0, 0, 1}.rows();
  for (int i = 0; i < 60; ++i) gaps[(i % 3) * 60 + i] = missing_value();
  ImputationTask<T> all(3, 60, KOB_SS_ROWS, gaps);
  EXPECT_EQ(all.compute(), 0);
  std::vector<double> unseen = Contaminated{3, 60, 0, 0, 1}.rows();
  for (int i = 0; i < 60; ++i) unseen[60 + i] = missing_value();
  ImputationTask<T> blind(3, 60, KOB_SS_ROWS, unseen, 2, 5);
  EXPECT_EQ(blind.compute(), 0);
  ImputationTask<T> single(1, 5, KOB_SS_ROWS, {1, 2, missing_value(), 4, 5});
  EXPECT_EQ(single.compute(), 0);
}

TYPED_TEST(MultipleImputation, NanThatIsAValue) {
  using T = TypeParam;
  std::vector<double> rows = regression(40, 2, 1, every_third);
  rows[7] = std::numeric_limits<double>::quiet_NaN();
  ImputationTask<T> t(2, 40, KOB_SS_ROWS, rows);
  EXPECT_EQ(t.missing, 14);
  EXPECT_EQ(without_loss([&] { return t.compute(); }), -4033);
  t.params[4] = 15;
  EXPECT_EQ(t.compute(), -4063);
}

// ---- start and prior ----

TYPED_TEST(MultipleImputation, StartAndPrior) {
  using T = TypeParam;
  const std::vector<double> rows = regression(60, 2, 1, every_third);
  const auto run = [&](std::vector<T> init, std::vector<T> prior, int em_rounds = 1) {
    ImputationTask<T> t(2, 60, KOB_SS_ROWS, rows, 4, 10, 1e-9, em_rounds);
    t.init = std::move(init);
    t.prior = std::move(prior);
    EXPECT_EQ(t.compute(), 0);
    return std::pair(t.simulated, t.moments(1).first);
  };
  const auto standard = run({}, {});
  EXPECT_NE(run({3, 11, 1, 2, 5}, {}).first, standard.first);
  EXPECT_EQ(run({0, 0, 1, 0, 1}, {}).first, standard.first);
  EXPECT_EQ(run({3, 11, 1, 2, 5, 6}, {}).first, standard.first);  // not p(p + 3)/2 numbers
  EXPECT_EQ(run({}, {0, 0, 0, 2, 0, 0, 0}).first, standard.first);
  EXPECT_EQ(run({}, {0, 0, -5, -1, 0, 0, 0}).first, standard.first);
  EXPECT_EQ(run({}, {50, 50, 9, 2, 0, 0}).first, standard.first);  // too few
  EXPECT_NEAR(run({}, {3, 40, 1e5, 2, 0, 0, 0}).second, 40, 1);    // so sure of it
  EXPECT_NE(run({}, {0, 0, 0, 30, 0, 0, 0}).first, standard.first);
  EXPECT_NE(run({}, {0, 0, 0, 2, 9, 0, 9}).first, standard.first);
}

// ---- statuses ----

TYPED_TEST(MultipleImputation, Statuses) {
  using T = TypeParam;
  const int p = 2, n = 30, storage = KOB_SS_ROWS, both = KOB_SS_ROWS | KOB_SS_COLUMNS;
  std::vector<T> x = in_precision<T>(regression(n, 2, 1, every_third));
  std::vector<T> params = {50, 2, T(0.001), 3, 9}, simulated(30), estimates(30);
  int four = 4, five = 5, simul_count = 29, estimate_count = 29;
  Task<T> t(p);
  const auto call = [&] { return Api<T>::impute(t.task, 0, method, nullptr); };
  mend<T>(t, call,
          {{-4003, KOB_SS_ID_OBSERVATION_STORAGE, &both},
           {-4003, KOB_SS_ID_OBSERVATION_STORAGE, &storage},
           {-4002, KOB_SS_ID_OBSERVATION_COUNT, &n},
           {-4032, KOB_SS_ID_OBSERVATIONS, x.data()},
           {-4048, KOB_SS_ID_IMPUTATION_PARAMETERS, params.data()},
           {-4049, KOB_SS_ID_IMPUTATION_PARAMETER_COUNT, &four},
           {-4050, KOB_SS_ID_IMPUTATION_PARAMETER_COUNT, &five},
           {-4060, KOB_SS_ID_IMPUTED_VALUES, simulated.data()},
           {-4055, KOB_SS_ID_IMPUTED_VALUE_COUNT, &simul_count}});
  EXPECT_EQ(Api<T>::impute(t.task, 0, ~KOB_SS_MULTIPLE_IMPUTATION, nullptr), -4029);
  EXPECT_EQ(call(), -4063);
  params[4] = 10;
  EXPECT_EQ(call(), -4058);
  params[3] = T(0.9);
  EXPECT_EQ(call(), -4051);
  params[3] = 3;
  simul_count = 30;
  EXPECT_EQ(call(), 0);
  t.set(KOB_SS_ID_IMPUTATION_ESTIMATES, estimates.data());
  EXPECT_EQ(call(), -4059);
  t.set(KOB_SS_ID_IMPUTATION_ESTIMATE_COUNT, &estimate_count);
  EXPECT_EQ(call(), -4059);
  estimate_count = 30;
  EXPECT_EQ(call(), 0);
  EXPECT_EQ(__kobSSUnset(t.task, KOB_SS_ID_IMPUTED_VALUES), 0);
  EXPECT_EQ(call(), -4054);
  for (T& v : x)
    if (v != v) v = 1;
  params[4] = 0;
  t.set(KOB_SS_ID_IMPUTED_VALUES, simulated.data());
  EXPECT_EQ(call(), -4051);
}

TYPED_TEST(MultipleImputation, DataThatTellNothing) {
  using T = TypeParam;
  // A constant variable that is observed where another is not; one that is made of another, and missing with it or
  // without it.
  const int n = 50;
  std::vector<double> rows = regression(n, 2, 1, every_third);
  for (int i = 0; i < n; ++i) rows[i] = 4;
  ImputationTask<T> constant(2, n, KOB_SS_ROWS, rows);
  EXPECT_EQ(without_loss([&] { return constant.compute(); }), -4033);
  const std::vector<double> y = regression(n, 2, 1, every_third);
  rows.assign(3 * n, 0);
  for (int i = 0; i < n; ++i) {
    rows[i] = y[i];
    rows[n + i] = 2 * y[i];
    rows[2 * n + i] = y[n + i];
  }
  ImputationTask<T> collinear(3, n, KOB_SS_ROWS, rows, 5, 30, 1e-9);
  EXPECT_EQ(without_loss([&] { return collinear.compute(); }), -4033);
  // Of two variables that are equal and missing together nothing is left but rounding, or less.
  bool met = false;
  for (int seed = 0; seed < 40 && !met; ++seed) {
    const std::vector<double> base = regression(n, seed, 1, every_third);
    for (int i = 0; i < n; ++i) {
      rows[i] = rows[n + i] = base[n + i];
      rows[2 * n + i] = base[i];
    }
    ImputationTask<T> together(3, n, KOB_SS_ROWS, rows, 5, 30, 1e-30, 300);
    const int status = without_loss([&] { return together.compute(); });
    met = status == -5021;
    EXPECT_TRUE(met || status == -5024 || status == 0) << status;
  }
  EXPECT_TRUE(met);
  // An inverse scale that is not positive semidefinite.
  ImputationTask<T> prior(2, n, KOB_SS_ROWS, y);
  prior.prior = {0, 0, 0, 2, -1e6, 0, -1e6};
  EXPECT_EQ(without_loss([&] { return prior.compute(); }), -5024);
}

TYPED_TEST(MultipleImputation, Allocations) {
  using T = TypeParam;
  ImputationTask<T> t(2, 60, KOB_SS_ROWS, regression(60, 2, 1, every_third), 2, 3);
  EXPECT_GT(fail_each_allocation([&] { return t.compute(); }, [](int status) { EXPECT_EQ(status, -4000); }),
            12);
}

}  // namespace
