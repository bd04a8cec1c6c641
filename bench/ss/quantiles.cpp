// Exact quantiles beside std::nth_element and std::sort, and streaming quantiles.
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "orx/ss.h"
#include "table.hpp"

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

void compute(benchmark::State& state, const std::vector<double>& x, int p, int n, int storage, int estimates,
             const std::vector<double>& orders) {
  std::vector<double> results(p * orders.size()), sorted(estimates & KOB_SS_ORDER_STATISTICS ? x.size() : 0);
  const int order_count = int(orders.size());
  SSTask* task;
  __kobdSSNewTask(&task, &p, &n, &storage, x.data(), nullptr, nullptr, 0);
  __kobdSSEditQuantiles(task, &order_count, orders.data(), results.data(), sorted.data(), &storage);
  bench::cycles(state, double(p) * n,
                [&] { _kobdSSQuantiles(task, estimates, KOB_SS_FAST, orx_serv_threading_serial()); });
  __kobSSDeleteTask(&task);
}

void exact(benchmark::State& state, int storage, int estimates) {
  compute(state, random_numbers(size_t(p) * n), p, n, storage, estimates, orders);
}

std::vector<double> even_orders(int count) {
  std::vector<double> result;
  for (int k = 1; k <= count; ++k) result.push_back(double(k) / (count + 1));
  return result;
}

// Several orders of one variable.
void many_orders(benchmark::State& state, int count) {
  compute(state, random_numbers(n), 1, n, KOB_SS_ROWS, KOB_SS_QUANTILES, even_orders(count));
}

// The median of data with a structure that may lead a choice of pivots astray.
void structured(benchmark::State& state, double (*value)(int)) {
  std::vector<double> x(n);
  for (int i = 0; i < n; ++i) x[i] = value(i);
  compute(state, x, 1, n, KOB_SS_ROWS, KOB_SS_QUANTILES, {0.5});
}

void sort_all(benchmark::State& state) {
  const std::vector<double> x = random_numbers(n);
  std::vector<double> copy;
  bench::cycles(
      state, n, [&] { copy = x; }, [&] { std::sort(copy.begin(), copy.end()); });
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
  for (const int count : {1, 3, 9, 24, 99})
    bench::repeat(benchmark::RegisterBenchmark(("quantiles/orders/" + std::to_string(count)).c_str(),
                                               [=](auto& s) { many_orders(s, count); }),
                  10);
  add("quantiles/orders/std::sort", 5, sort_all);
  add("median/random", 10, [](auto& s) { many_orders(s, 1); });
  add("median/sorted", 10, [](auto& s) { structured(s, [](int i) { return double(i); }); });
  add("median/organ_pipe", 10,
      [](auto& s) { structured(s, [](int i) { return double(i < n / 2 ? i : n - i); }); });
  add("median/sawtooth", 10, [](auto& s) { structured(s, [](int i) { return double(i % 1000); }); });
  add("median/two_runs", 10,
      [](auto& s) { structured(s, [](int i) { return double(i < n / 2 ? 2 * i : 2 * i - n); }); });
  add("median/constant", 10, [](auto& s) { structured(s, [](int) { return 3.; }); });
  add("order_statistics/rows", 5, [](auto& s) { exact(s, KOB_SS_ROWS, KOB_SS_ORDER_STATISTICS); });
  add("order_statistics/columns", 5, [](auto& s) { exact(s, KOB_SS_COLUMNS, KOB_SS_ORDER_STATISTICS); });
  add("stream/blocks_of_1000000", 5, [](auto& s) { stream(s, 1000000); });
  add("stream/blocks_of_100", 3, [](auto& s) { stream(s, 100); });
  return bench::run(argc, argv, "quantiles");
}
