// Radix sort beside std::sort, on fresh random data in every iteration.
#include <random>
#include <vector>

#include "../ss/cycles.hpp"
#include "orx/primitives.h"

namespace {

void radix(float* x, float* work, int n) { g9_ulosSortRadixAscend_32f_I(x, work, n); }
void radix(double* x, double* work, int n) { g9_ulosSortRadixAscend_64f_I(x, work, n); }

template <class T, bool peer>
void sort(benchmark::State& state) {
  const int n = int(state.range(0));
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal;
  std::vector<T> x(n), work(n);
  bench::cycles(
      state, n, [&] { std::generate(x.begin(), x.end(), [&] { return T(normal(random)); }); },
      [&] { peer ? std::sort(x.begin(), x.end()) : radix(x.data(), work.data(), n); });
}

void sizes(benchmark::internal::Benchmark* b) {
  bench::repeat(b->Arg(64)->Arg(100)->Arg(300)->Arg(1000)->Arg(3000)->Arg(13000)->Arg(1000000), 25);
}

BENCHMARK_TEMPLATE(sort, double, false)->Apply(sizes)->Name("double/radix");
BENCHMARK_TEMPLATE(sort, double, true)->Apply(sizes)->Name("double/std::sort");
BENCHMARK_TEMPLATE(sort, float, false)->Apply(sizes)->Name("float/radix");
BENCHMARK_TEMPLATE(sort, float, true)->Apply(sizes)->Name("float/std::sort");

}  // namespace

BENCHMARK_MAIN();
