// Two data sets known for their outliers, by classical and by robust distances; then the air of New York, where a
// quarter of the days lack a measurement, and what that costs.
#include <cmath>
#include <cstdio>
#include <limits>
#include <stdexcept>
#include <vector>

#include "chapters.h"
#include "csv.h"
#include "orx/kob.h"
#include "orx/ss.h"
#include "svg.h"

namespace {

constexpr int kFull = KOB_SS_FULL, kRows = KOB_SS_ROWS;

void check(int status) {
  if (status < 0) throw std::runtime_error("robust: status " + std::to_string(status));
}

// A task over variables in rows.
class Data {
 public:
  explicit Data(const std::vector<Column>& rows) : p_(int(rows.size())), n_(int(rows[0].size())) {
    for (const Column& row : rows) x_.insert(x_.end(), row.begin(), row.end());
    check(__kobdSSNewTask(&task_, &p_, &n_, &kRows, x_.data(), nullptr, nullptr, 0));
  }
  Data(const Data&) = delete;
  Data& operator=(const Data&) = delete;
  ~Data() { __kobSSDeleteTask(&task_); }

  operator SSTask*() const { return task_; }
  int p() const { return p_; }
  int n() const { return n_; }
  double operator()(int j, int i) const { return x_[size_t(j) * size_t(n_) + size_t(i)]; }

 private:
  int p_, n_;
  std::vector<double> x_;
  SSTask* task_ = nullptr;
};

// ---- distances ----

struct Estimate {
  std::vector<double> mean, cov;
  explicit Estimate(int p) : mean(size_t(p)), cov(size_t(p) * size_t(p)) {}
};

Estimate classical(const Data& data) {
  Estimate e(data.p());
  check(__kobdSSEditCovCor(data, e.mean.data(), e.cov.data(), &kFull, nullptr, nullptr));
  check(_kobdSSBasic(data, KOB_SS_COVARIANCE, KOB_SS_ONE_PASS, nullptr));
  return e;
}

Estimate robust_estimate(const Data& data, double rejection) {
  Estimate e(data.p());
  const int count = 4;
  const double parameters[] = {0.5, rejection, 1e-6, 200};
  check(__kobdSSEditRCov(data, &kFull, &count, parameters, e.mean.data(), e.cov.data()));
  check(_kobdSSRobustCovariance(data, 0, KOB_SS_TBS, nullptr));
  return e;
}

std::vector<double> distances(const Data& data, Estimate e) {
  std::vector<double> d(size_t(data.n()));
  check(__kobdInvCov(data.p(), e.cov.data()));
  check(__kobdSSEditMahDistance(data, nullptr, nullptr, e.mean.data(), e.cov.data(), d.data(), nullptr,
                                nullptr));
  check(_kobdSSMahDistance(data, 0, 0, nullptr));
  return d;
}

std::vector<double> bacon_weights(const Data& data) {
  std::vector<double> weights(size_t(data.n()));
  check(__kobdSSEditOutDetect(data, nullptr, nullptr, weights.data()));
  check(_kobdSSOutliersDetection(data, 0, KOB_SS_BACON, nullptr));
  return weights;
}

// The numbers of the observations for which test(i) holds, counted from 1, runs of them as first-last.
template <class Test>
void print_observations(const char* title, int n, Test test) {
  std::printf("  %-44s", title);
  bool any = false;
  for (int i = 0; i < n; ++i) {
    if (!test(size_t(i))) continue;
    const int first = i;
    while (i + 1 < n && test(size_t(i + 1))) ++i;
    std::printf(i > first ? "%s%d-%d" : "%s%d", any ? ", " : " ", first + 1, i + 1);
    any = true;
  }
  std::printf(any ? "\n" : " none\n");
}

// A distance-distance plot (Rousseeuw and van Zomeren 1990): what is far up and not far right hides from the classical
// estimate.
Panel outliers(const char* title, const Data& data, double rejection) {
  const double cut = std::sqrt(__kobdChi2ICDF(data.p(), 0.975));
  const std::vector<double> before = distances(data, classical(data));
  const std::vector<double> after = distances(data, robust_estimate(data, rejection));
  const std::vector<double> weights = bacon_weights(data);
  std::printf("\n%s, n = %d, p = %d; distances beyond %.3f, which 2.5 %% of normal data pass\n", title,
              data.n(), data.p(), cut);
  print_observations("by mean and covariance", data.n(), [&](size_t i) { return before[i] > cut; });
  print_observations("by the robust estimate", data.n(), [&](size_t i) { return after[i] > cut; });
  print_observations("outliers by BACON", data.n(), [&](size_t i) { return weights[i] == 0; });

  Curve good{{}, {}, "#1f6fb4", "good", true}, bad{{}, {}, "#c23b22", "outliers", true};
  double most_before = cut, most_after = cut;
  for (size_t i = 0; i < before.size(); ++i) {
    Curve& curve = after[i] > cut ? bad : good;
    curve.x.push_back(before[i]);
    curve.y.push_back(after[i]);
    most_before = std::max(most_before, before[i]);
    most_after = std::max(most_after, after[i]);
  }
  const Curve across{{0, most_before}, {cut, cut}, "#888", "97.5 %"},
      up{{cut, cut}, {0, most_after}, "#888", ""};
  return {title, "classical distance", "robust distance", {across, up, good, bad}};
}

// ---- gaps ----

struct Interval {
  double mean, variance;
};

Interval mean_of(const Column& x) {
  double sum = 0, squares = 0;
  for (const double v : x) sum += v;
  const double n = double(x.size()), mean = sum / n;
  for (const double v : x) squares += (v - mean) * (v - mean);
  return {mean, squares / (n - 1) / n};
}

// The variables with the values of one imputation: those of an observation stand together.
std::vector<Column> completed(const Data& data, const double* imputed) {
  std::vector<Column> columns(size_t(data.p()));
  for (int i = 0; i < data.n(); ++i)
    for (int j = 0; j < data.p(); ++j)
      columns[size_t(j)].push_back(std::isnan(data(j, i)) ? *imputed++ : data(j, i));
  return columns;
}

void print_interval(Interval v) {
  const double half = 1.96 * std::sqrt(v.variance);
  std::printf("  %7.2f  %7.2f to %7.2f", v.mean, v.mean - half, v.mean + half);
}

// Means with intervals of 95 % by Rubin's rules (1987), from twenty imputations.
void gaps(const Data& data, const std::vector<std::string>& names) {
  int missing = 0;
  for (int i = 0; i < data.n(); ++i)
    for (int j = 0; j < data.p(); ++j) missing += std::isnan(data(j, i));
  const int imputations = 20, count = 5, imputed_count = imputations * missing;
  const double parameters[] = {200, 30, 1e-6, imputations, double(missing)};
  std::vector<double> imputed(static_cast<size_t>(imputed_count));
  check(__kobdSSEditMissingVals(data, &count, parameters, nullptr, nullptr, nullptr, nullptr, &imputed_count,
                                imputed.data(), nullptr, nullptr));
  check(_kobdSSMissingValues(data, 0, KOB_SS_MULTIPLE_IMPUTATION | KOB_SS_RESTORED_PRIOR, nullptr));

  std::printf("\nThe air of New York, May to September 1973: %d days, %d measurements missing\n", data.n(),
              missing);
  std::printf(
      "  mean of   missing      of the days that have it         of all days, imputed   share of the "
      "interval's\n"
      "                        (with 95 %% interval)              (with 95 %% interval)    variance due to "
      "gaps\n");
  for (int j = 0; j < data.p(); ++j) {
    Column known;
    for (int i = 0; i < data.n(); ++i)
      if (!std::isnan(data(j, i))) known.push_back(data(j, i));
    Column means;
    double within = 0;
    for (int m = 0; m < imputations; ++m) {
      const Interval one = mean_of(completed(data, &imputed[size_t(m) * size_t(missing)])[size_t(j)]);
      means.push_back(one.mean);
      within += one.variance / imputations;
    }
    const Interval between = mean_of(means);  // its variance is that of the mean: B / m
    const double gap = (1 + 1.0 / imputations) * between.variance * imputations;
    std::printf("  %-8s  %6d", names[size_t(j)].c_str(), data.n() - int(known.size()));
    print_interval(mean_of(known));
    print_interval({between.mean, within + gap});
    std::printf("    %5.1f %%\n", 100 * gap / (within + gap));
  }
}

}  // namespace

void robust(const std::string& data_directory) {
  std::vector<Column> hbk = read_csv(data_directory + "/hbk.csv", {"X1", "X2", "X3", "Y"});
  std::vector<Column> stackloss =
      read_csv(data_directory + "/stackloss.csv", {"Air.Flow", "Water.Temp", "Acid.Conc.", "stack.loss"});
  hbk.pop_back();
  stackloss.pop_back();
  const std::string picture = "robust.svg";
  write_svg(picture, {outliers("Hawkins, Bradu and Kass", Data(hbk), 0.001),
                      outliers("Stack loss", Data(stackloss), 0.01)});

  const double missing = -std::numeric_limits<double>::quiet_NaN();
  const std::vector<std::string> names = {"Ozone", "Solar.R", "Wind", "Temp", "Month", "Day"};
  std::vector<Column> air = read_csv(data_directory + "/airquality.csv", names, &missing);
  air.resize(4);
  gaps(Data(air), names);
  std::printf("\nPlotted in %s\n", picture.c_str());
}
