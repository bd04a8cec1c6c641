// Exact quantiles beside std::nth_element, and streaming quantiles.
#include <random>
#include <vector>

#include "cycles.hpp"
#include "orx/ss.h"

namespace {

const std::vector<double> orders = {0.25, 0.5, 0.75};

std::vector<double> random_numbers(size_t count) {
  std::mt19937_64 random(1);
  std::normal_distribution<float> normal;
  std::vector<double> x(count);
  for (double& v : x) v = double(normal(random)) + 1e-9 * double(random() & 0xFFFF);
  return x;
}

constexpr int p = 10, n = 1000000;

void exact(benchmark::State& state, int storage, int estimates) {
  const std::vector<double> x = random_numbers(size_t(p) * n);
  std::vector<double> results(p * orders.size()), sorted(estimates & KOB_SS_ORDER_STATISTICS ? x.size() : 0);
  const int order_count = int(orders.size());
  SSTask* task;
  __kobdSSNewTask(&task, &p, &n, &storage, x.data(), nullptr, nullptr, 0);
  __kobdSSEditQuantiles(task, &order_count, orders.data(), results.data(), sorted.data(), &storage);
  bench::cycles(state, double(p) * n,
                [&] { _kobdSSQuantiles(task, estimates, KOB_SS_FAST, orx_serv_threading_serial()); });
  __kobSSDeleteTask(&task);
}

// One call per order on one copy of each variable, without the interpolation.
void nth_element(benchmark::State& state, int storage) {
  const std::vector<double> x = random_numbers(size_t(p) * n);
  std::vector<double> copy(n);
  bench::cycles(state, double(p) * n, [&] {
    for (int j = 0; j < p; ++j) {
      for (int i = 0; i < n; ++i)
        copy[i] = storage == KOB_SS_ROWS ? x[size_t(j) * n + i] : x[size_t(i) * p + j];
      for (const double order : orders) {
        const auto at = copy.begin() + int((n - 1) * order);
        std::nth_element(copy.begin(), at, copy.end());
        benchmark::DoNotOptimize(*at);
      }
    }
  });
}

void stream(benchmark::State& state, int block) {
  const int one = 1, count = 10000000, order_count = int(orders.size()), storage = KOB_SS_ROWS;
  const double eps = 0.001;
  const std::vector<double> x = random_numbers(count);
  std::vector<double> results(orders.size());
  bench::cycles(state, count, [&] {
    SSTask* task;
    __kobdSSNewTask(&task, &one, &block, &storage, x.data(), nullptr, nullptr, 0);
    __kobdSSEditStreamQuantiles(task, &order_count, orders.data(), results.data(), &one, &eps);
    for (int at = 0; at < count; at += block) {
      __kobdSSEditTask(task, KOB_SS_ID_OBSERVATIONS, &x[at]);
      _kobdSSStreamQuantiles(task, 0, at + block == count ? KOB_SS_STREAM_QUANTILES : KOB_SS_STREAM_UPDATE,
                             orx_serv_threading_serial());
    }
    __kobSSDeleteTask(&task);
  });
}

void add(const char* name, int iterations, void (*f)(benchmark::State&)) {
  bench::repeat(benchmark::RegisterBenchmark(name, f), iterations);
}

}  // namespace

int main(int argc, char** argv) {
  add("quantiles/3_orders/rows", 10, [](auto& s) { exact(s, KOB_SS_ROWS, KOB_SS_QUANTILES); });
  add("quantiles/3_orders/columns", 10, [](auto& s) { exact(s, KOB_SS_COLUMNS, KOB_SS_QUANTILES); });
  add("quantiles/3_orders/nth_element/rows", 5, [](auto& s) { nth_element(s, KOB_SS_ROWS); });
  add("quantiles/3_orders/nth_element/columns", 5, [](auto& s) { nth_element(s, KOB_SS_COLUMNS); });
  add("order_statistics/rows", 5, [](auto& s) { exact(s, KOB_SS_ROWS, KOB_SS_ORDER_STATISTICS); });
  add("order_statistics/columns", 5, [](auto& s) { exact(s, KOB_SS_COLUMNS, KOB_SS_ORDER_STATISTICS); });
  add("stream/blocks_of_1000000", 5, [](auto& s) { stream(s, 1000000); });
  add("stream/blocks_of_100", 3, [](auto& s) { stream(s, 100); });
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
