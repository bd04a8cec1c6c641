// Moments of one variable, the case that is met most often, beside Boost.Accumulators and a plain loop that goes over the
// data twice; pooled covariance of few and of many groups.
#include <boost/accumulators/accumulators.hpp>
#include <boost/accumulators/statistics.hpp>
#include <random>
#include <vector>

#include "orx/ss.h"
#include "table.hpp"

namespace {

namespace acc = boost::accumulators;

constexpr int n = 1000000;

const std::vector<double>& numbers() {
  static const std::vector<double> x = [] {
    std::mt19937_64 random(1);
    std::normal_distribution<double> normal(3, 2);
    std::vector<double> v(n);
    for (double& y : v) y = normal(random);
    return v;
  }();
  return x;
}

void describe(benchmark::State& state, bool four) {
  const std::vector<double>& x = numbers();
  double mean, variance, skewness, kurtosis;
  bench::cycles(state, n, [&] {
    __kobdSSDescribe(1, n, KOB_SS_ROWS, x.data(), nullptr, &mean, &variance, four ? &skewness : nullptr,
                     four ? &kurtosis : nullptr, nullptr, nullptr, nullptr);
  });
}

template <class... Features>
void boost_accumulators(benchmark::State& state) {
  const std::vector<double>& x = numbers();
  bench::cycles(state, n, [&] {
    acc::accumulator_set<double, acc::stats<Features...>> set;
    for (const double v : x) set(v);
    benchmark::DoNotOptimize(acc::extract::count(set));
    (benchmark::DoNotOptimize(acc::extract_result<Features>(set)), ...);
  });
}

// The compiler may not reorder the sums, so that each waits for the one before it.
void two_passes(benchmark::State& state, bool four) {
  const std::vector<double>& x = numbers();
  bench::cycles(state, n, [&] {
    double mean = 0, c2 = 0, c3 = 0, c4 = 0;
    for (const double v : x) mean += v;
    mean /= n;
    for (const double v : x) {
      const double d = v - mean, d2 = d * d;
      c2 += d2;
      if (four) c3 += d2 * d, c4 += d2 * d2;
    }
    benchmark::DoNotOptimize(c2);
    benchmark::DoNotOptimize(c3);
    benchmark::DoNotOptimize(c4);
  });
}

void pooled(benchmark::State& state, int group_count, int stray) {
  const int p = 10, count = n / p, storage = KOB_SS_COLUMNS, full = KOB_SS_FULL;
  const std::vector<double>& x = numbers();
  std::vector<int> groups(count);
  std::mt19937 random(2);
  for (int& g : groups) g = int(random() % unsigned(group_count));
  if (stray) groups[count / 2] = stray;
  double mean[p], cov[p * p];
  SSTask* task;
  __kobdSSNewTask(&task, &p, &count, &storage, x.data(), nullptr, nullptr, 0);
  __kobdSSEditPooledCovariance(task, groups.data(), mean, cov, nullptr, nullptr, nullptr);
  __kobiSSEditTask(task, KOB_SS_ID_POOLED_COVARIANCE_STORAGE, &full);
  bench::cycles(state, n, [&] {
    _kobdSSPooledCovariance(task, KOB_SS_POOLED_COVARIANCE, KOB_SS_ONE_PASS, orx_serv_threading_serial());
  });
  __kobSSDeleteTask(&task);
}

void add(const char* name, int iterations, void (*f)(benchmark::State&)) {
  bench::repeat(benchmark::RegisterBenchmark(name, f), iterations);
}

}  // namespace

int main(int argc, char** argv) {
  add("mean_variance/one_pass", 50, [](auto& s) { describe(s, false); });
  add("mean_variance/boost_lazy", 10, boost_accumulators<acc::tag::mean, acc::tag::lazy_variance>);
  add("mean_variance/boost_immediate", 10, boost_accumulators<acc::tag::immediate_mean, acc::tag::variance>);
  add("mean_variance/two_passes", 20, [](auto& s) { two_passes(s, false); });
  add("four_moments/one_pass", 50, [](auto& s) { describe(s, true); });
  add("four_moments/boost_lazy", 10,
      boost_accumulators<acc::tag::mean, acc::tag::lazy_variance, acc::tag::skewness, acc::tag::kurtosis>);
  add("four_moments/two_passes", 20, [](auto& s) { two_passes(s, true); });
  add("pooled/4_groups", 10, [](auto& s) { pooled(s, 4, 0); });
  add("pooled/4_groups_and_stray", 10, [](auto& s) { pooled(s, 4, 100000000); });
  add("pooled/4000_groups", 10, [](auto& s) { pooled(s, 4000, 0); });
  return bench::run(argc, argv, "one variable");
}
