// Cycles per element of every vector kernel, beside its peers.
//
//   bench_tef [--write FILE] [--costs] [Google Benchmark's options]
//
// One benchmark is one function at one length. In each iteration all kernels of the function and all its
// peers take their turn, so that a noisy moment hits all alike; repetitions of all benchmarks are mixed for
// the same reason. The counters are the least times so far, in cycles of the time-stamp counter per element.
// --write puts the results into a document, --costs prints rows for the list of functions.
#include <benchmark/benchmark.h>
#include <gnu/libc-version.h>
#include <sleef.h>
#include <x86intrin.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <numeric>
#include <random>
#include <sstream>

#include "machine.hpp"
#include "orx/tef.h"
#include "peers.hpp"

namespace {

constexpr int kLengths[] = {2000, 1 << 22};
constexpr int kInCache = 0, kOutOfCache = 1;

constexpr const char* kPeerNames[kPeerKinds] = {"loop", "SLEEF 1.0", "SLEEF 3.5"};

// A vector is walked in blocks, short enough that many escape an interruption by another process.
constexpr int kBlock = 1 << 14;

// The least cycles that each block has taken.
using BlockCycles = std::vector<double>;
std::map<std::string, BlockCycles> least[2];  // by length, then function and competitor

std::string key(const FunctionEntry& f, const std::string& competitor) {
  return f.full_name() + " " + competitor;
}

// Cycles per element of the whole vector; not a number if it was not run.
double cycles(const FunctionEntry& f, const std::string& competitor, int length) {
  const auto found = least[length].find(key(f, competitor));
  if (found == least[length].end()) return NAN;
  return std::accumulate(found->second.begin(), found->second.end(), 0.0) / kLengths[length];
}

template <class T>
struct Competitor {
  std::string name;
  std::function<void(const KernelOperands<T>&, int n)> call;
};

template <class T>
class Race {
 public:
  Race(const FunctionEntry& f, int n) : f_(f), n_(n), random_(1) {
    for (int j = 0; j < f.shape->inputs; ++j) o_.in[j] = new_array(true);
    for (int j = 0; j < f.shape->outputs; ++j) o_.out[j] = new_array(false);
    std::fill_n(o_.scalar, 4, T(1.25));
    for (const KernelEntry& k : f.kernels)
      competitors.push_back({k.name, [&](const KernelOperands<T>& o, int n) { call_kernel(f, k, n, o); }});
    for (const Peer<T>& p : peers<T>())
      if (f.name == p.function)
        competitors.push_back(
            {kPeerNames[static_cast<int>(p.kind)], [&p](const KernelOperands<T>& o, int n) { p.run(n, o); }});
  }

  // The operands of the block that begins at element `from`.
  KernelOperands<T> operands_at(int from) const {
    KernelOperands<T> o = o_;
    for (int j = 0; j < f_.shape->inputs; ++j) o.in[j] += from;
    for (int j = 0; j < f_.shape->outputs; ++j) o.out[j] += from;
    return o;
  }

  std::vector<Competitor<T>> competitors;

 private:
  // Spread evenly over the kernels' range, or evenly in logarithm over a wide range of positive numbers.
  T* new_array(bool fill) {
    arrays_.emplace_back(static_cast<T*>(std::aligned_alloc(64, n_ * sizeof(T))), std::free);
    T* x = arrays_.back().get();
    const double from = f_.kernels.front().from, to = f_.kernels.front().to;
    const bool by_logarithm = from > 0 && to / from > 1e6;
    std::uniform_real_distribution<double> even(by_logarithm ? std::log(from) : from,
                                                by_logarithm ? std::log(to) : to);
    for (int i = 0; i < n_; ++i) {
      const double u = fill ? even(random_) : 0;
      x[i] = static_cast<T>(by_logarithm ? std::exp(u) : u);
    }
    return x;
  }

  const FunctionEntry& f_;
  const int n_;
  std::mt19937 random_;
  KernelOperands<T> o_;
  std::vector<std::unique_ptr<T, void (*)(void*)>> arrays_;
};

uint64_t time_stamp() {
  _mm_lfence();
  const uint64_t t = __rdtsc();
  _mm_lfence();
  return t;
}

template <class T>
void run(benchmark::State& state, const FunctionEntry& f, int length) {
  const int n = kLengths[length], blocks = (n + kBlock - 1) / kBlock;
  const Race<T> r(f, n);
  // In cache, the first call of a turn fetches what the others' turns have thrown out.
  const int calls = length == kInCache ? 6 : 1;
  for (auto _ : state) {
    for (const Competitor<T>& c : r.competitors) {
      BlockCycles& best = least[length].try_emplace(key(f, c.name), blocks, INFINITY).first->second;
      for (int i = 0; i < calls * blocks; ++i) {
        const int b = i % blocks, from = b * kBlock;
        const KernelOperands<T> o = r.operands_at(from);
        const uint64_t start = time_stamp();
        c.call(o, std::min(kBlock, n - from));
        best[b] = std::min(best[b], static_cast<double>(time_stamp() - start));
      }
    }
  }
  for (const Competitor<T>& c : r.competitors) state.counters[c.name] = cycles(f, c.name, length);
}

void register_benchmarks() {
  for (const FunctionEntry& f : kernel_list()) {
    if (!f.shape) continue;
    for (int length : {kInCache, kOutOfCache}) {
      const std::string name = f.full_name() + "/" + std::to_string(kLengths[length]);
      const auto body = f.type == 's' ? run<float> : run<double>;
      benchmark::RegisterBenchmark(name.c_str(), [=, &f](benchmark::State& s) { body(s, f, length); })
          ->Iterations(length == kInCache ? 300 : 3)
          ->Repetitions(5);
    }
  }
}

// Of the repetitions of a benchmark the last one tells all: minima have no mean.
class LastRepetition : public benchmark::ConsoleReporter {
 public:
  LastRepetition() : ConsoleReporter(OO_None) {}

 private:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs)
      if (run.run_type == Run::RT_Iteration && run.repetition_index == run.repetitions - 1)
        ConsoleReporter::ReportRuns({run});
  }
};

std::string text(double x) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, x < 100 ? "%.2f" : "%.0f", x);
  return buffer;
}

std::string table(int length) {
  std::ostringstream s;
  s << "| kernel | class | cycles | plain loop | SLEEF, 1.0 ulp | SLEEF, 3.5 ulp |\n"
       "|---|---|---|---|---|---|\n";
  for (const FunctionEntry& f : kernel_list()) {
    for (const KernelEntry& k : f.kernels) {
      const double own = cycles(f, k.name, length);
      if (std::isnan(own)) continue;
      s << "| `" << k.name << "` | " << k.classes << " | " << text(own);
      for (const char* name : kPeerNames) {
        const double other = cycles(f, name, length);
        s << " | ";
        if (!std::isnan(other)) s << text(other) << " (" << text(other / own) << "x)";
      }
      s << " |\n";
    }
  }
  return s.str();
}

void write_report(const std::string& file) {
  std::ofstream s(file);
  s << "# Speed of the vector functions\n\nWritten by `script/bench`; not to be edited. One run on "
    << processor_name() << ", " << kCodeWidth << " code, " << kCompilerName << ", glibc "
    << gnu_get_libc_version() << ", SLEEF " << SLEEF_VERSION_MAJOR << "." << SLEEF_VERSION_MINOR << "."
    << SLEEF_VERSION_PATCHLEVEL << R"(.

Figures are cycles of the time-stamp counter per element, the least of many calls; long vectors are walked
in blocks of 16384 elements, and the least time of each block counts. In brackets: how many times as fast as the peer the
kernel is. All kernels of a function and its peers took turns in one process, on the same arguments, spread over the
range that stands beside the kernel in its source.

The plain loop calls the C library's function for each element, or is the arithmetic itself, compiled with `-O3 -mavx`.
In 32-bit code the C library does much of its double-precision work in the x87 unit, and is slower there than in 64-bit
code. SLEEF is called four doubles or eight singles at a time, in its variant for AVX.

## In cache: 2000 elements

)" << table(kInCache)
    << "\n## Out of cache: 2^22 elements\n\n"
    << table(kOutOfCache);
  if (!s.flush()) {
    std::cerr << "bench_tef: cannot write " << file << "\n";
    std::exit(2);
  }
}

// Rows of the list whose costs are given. They are on a scale of their own; the others are measured and
// brought to it.
bool cost_is_given(const FunctionEntry& f) {
  for (const char* given : {"sAdd", "dAdd", "sExp", "dExp", "dLinearFrac"})
    if (f.full_name() == given) return true;
  return false;
}

// Plain arithmetic hangs on the memory alone and is brought to the scale of Add, all else to that of the
// others.
bool is_plain(const FunctionEntry& f) { return !f.kernels.front().has_line; }

const KernelEntry& kernel_of_class(const FunctionEntry& f, int index) {
  return *std::find_if(f.kernels.begin(), f.kernels.end(),
                       [=](const KernelEntry& k) { return k.serves[index]; });
}

// The geometric mean of given over measured costs.
double cost_scale(bool plain) {
  double sum = 0;
  int count = 0;
  for (const FunctionEntry& f : kernel_list())
    if (f.shape && cost_is_given(f) && is_plain(f) == plain)
      for (int i = 0; i < 3; ++i, ++count)
        sum += std::log(f.cost[i] / cycles(f, kernel_of_class(f, i).name, kInCache));
  return std::exp(sum / count);
}

void print_costs() {
  const double scales[2] = {cost_scale(false), cost_scale(true)};
  std::cout << "\ncosts: measured times " << text(scales[0]) << ", plain arithmetic times " << text(scales[1])
            << "\n";
  for (const FunctionEntry& f : kernel_list()) {
    if (!f.shape || std::isnan(cycles(f, f.kernels.front().name, kInCache))) continue;
    std::string codes, costs;
    for (int i = 0; i < 3; ++i) {
      const KernelEntry& k = kernel_of_class(f, i);
      const double cost = cost_is_given(f) ? f.cost[i] : cycles(f, k.name, kInCache) * scales[is_plain(f)];
      codes += k.name.substr(f.full_name().size() + 1) + ", ";
      costs += (i ? ",  " : " ") + text(cost);
    }
    std::printf("ORX_FUNCTION(%-11s %c, %-11s %s%s)\n", (std::string(f.shape->name) + ",").c_str(), f.type,
                (f.name + ",").c_str(), codes.c_str(), costs.c_str());
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  char mixed[] = "--benchmark_enable_random_interleaving=true";
  arguments.insert(arguments.begin() + 1, mixed);
  argc = static_cast<int>(arguments.size());
  argv = arguments.data();
  benchmark::Initialize(&argc, argv);
  std::string file;
  bool costs = false;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--costs") {
      costs = true;
    } else if (word == "--write" && i + 1 < argc) {
      file = argv[++i];
    } else {
      std::cerr << "usage: bench_tef [--write FILE] [--costs] [Google Benchmark's options]\n";
      return 2;
    }
  }
  orx_tef_kernel_SetMode(TEF_HA | TEF_ERRMODE_IGNORE | TEF_FLUSH_OFF);
  register_benchmarks();
  LastRepetition reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::cout << "\nin cache, cycles per element\n"
            << table(kInCache) << "\nout of cache\n"
            << table(kOutOfCache);
  if (costs) print_costs();
  if (!file.empty()) write_report(file);
}
