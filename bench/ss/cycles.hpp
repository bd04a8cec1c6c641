// Cycles per element by the time-stamp counter, the least of all repetitions.
//
// On a machine that others use too, a run of more than a few milliseconds rarely passes without another
// process being let in. So there is a second figure, of the calling thread's processor time in the same unit:
// it leaves out the time in which the thread did not run, and that of other threads.
#pragma once

#include <benchmark/benchmark.h>
#include <time.h>
#include <x86intrin.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace bench {

inline double seconds(clockid_t clock) {
  timespec t;
  clock_gettime(clock, &t);
  return double(t.tv_sec) + 1e-9 * double(t.tv_nsec);
}

// Ticks of the time-stamp counter in a second.
inline double tick_rate() {
  static const double rate = [] {
    const double start = seconds(CLOCK_MONOTONIC);
    const uint64_t ticks = __rdtsc();
    double passed;
    do passed = seconds(CLOCK_MONOTONIC) - start;
    while (passed < 0.05);
    return double(__rdtsc() - ticks) / passed;
  }();
  return rate;
}

// Runs prepare(), untimed, and run(), timed, once per iteration.
template <class Prepare, class Run>
void cycles(benchmark::State& state, double elements, Prepare prepare, Run run) {
  double best = std::numeric_limits<double>::infinity(), best_cpu = best;
  for (auto _ : state) {
    prepare();
    const double cpu = seconds(CLOCK_THREAD_CPUTIME_ID);
    const uint64_t start = __rdtsc();
    run();
    const double ticks = double(__rdtsc() - start), cpu_passed = seconds(CLOCK_THREAD_CPUTIME_ID) - cpu;
    best = std::min(best, ticks);
    best_cpu = std::min(best_cpu, cpu_passed * tick_rate());
    state.SetIterationTime(ticks / tick_rate());
  }
  state.counters["thread_cycles/elem"] = best_cpu / elements;
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
