// Cycles per element by the time-stamp counter, the least of all repetitions.
#pragma once

#include <benchmark/benchmark.h>
#include <x86intrin.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace bench {

// Runs prepare(), untimed, and run(), timed, once per iteration.
template <class Prepare, class Run>
void cycles(benchmark::State& state, double elements, Prepare prepare, Run run) {
  double best = std::numeric_limits<double>::infinity();
  for (auto _ : state) {
    prepare();
    const uint64_t start = __rdtsc();
    run();
    const double passed = double(__rdtsc() - start);
    best = std::min(best, passed);
    state.SetIterationTime(passed * 1e-9);
  }
  state.counters["cycles/elem"] = best / elements;
}

template <class Run>
void cycles(benchmark::State& state, double elements, Run run) {
  cycles(
      state, elements, [] {}, run);
}

// How a benchmark of this sort is registered.
inline void repeat(benchmark::internal::Benchmark* b, int iterations) {
  b->Iterations(iterations)->UseManualTime()->Unit(benchmark::kMillisecond);
}

}  // namespace bench
