// Cycles per element of every vector kernel, beside its peers.
//
//   bench_tef [--short] [--write FILE] [--costs] [Google Benchmark's options]
//   bench_tef --calls [--write FILE] [FUNCTION...]
//
// One benchmark is one function at one length. In each iteration all kernels of the function and all its
// peers take their turn, so that a noisy moment hits all alike; repetitions of all benchmarks are mixed for
// the same reason. The counters are the least times so far, in cycles of the time-stamp counter per element.
// --short runs in cache alone and few times; --write puts the rows into the document's tables, where those of functions
// that were not run stay; --costs prints rows for the list of functions. --calls times what long vectors of usual elements do not show: short calls, and
// vectors of zeros, denormals, infinities, huge numbers and elements in error.
#include <benchmark/benchmark.h>
#include <gnu/libc-version.h>
#include <sleef.h>

#include <cstdio>
#include <iostream>
#include <map>
#include <numeric>
#include <sstream>

#include "accuracy/machine.hpp"
#include "calls.hpp"
#include "functions/sections.hpp"
#include "race.hpp"

namespace {

using namespace orx;

constexpr int kLengths[] = {2000, 1 << 22};
constexpr int kInCache = 0, kOutOfCache = 1;

// The least cycles that each block has taken.
using BlockCycles = std::vector<double>;
std::map<std::string, BlockCycles> least[2];  // by length, then function and competitor

std::string key(const Function& f, const std::string& competitor) { return f.full_name() + " " + competitor; }

// Cycles per element of the whole vector; not a number if it was not run.
double cycles(const Function& f, const std::string& competitor, int length) {
  const auto found = least[length].find(key(f, competitor));
  if (found == least[length].end()) return NAN;
  return std::accumulate(found->second.begin(), found->second.end(), 0.0) / kLengths[length];
}

template <class R>
void run(benchmark::State& state, const Function& f, int length) {
  const int n = kLengths[length], blocks = (n + kRaceBlock - 1) / kRaceBlock;
  const Race<R> race(f, n);
  // In cache, the first call of a turn fetches what the others' turns have thrown out.
  const int calls = length == kInCache ? 6 : 1;
  for (auto _ : state) {
    for (const Competitor<R>& c : race.competitors) {
      BlockCycles& best = least[length].try_emplace(key(f, c.name), blocks, INFINITY).first->second;
      _mm256_zeroupper();  // as after any code that a compiler made: kernels without VEX suffer from a dirty state
      for (int i = 0; i < calls * blocks; ++i) {
        const int b = i % blocks, from = b * kRaceBlock;
        const Operands<R> o = race.operands_at(from);
        const uint64_t start = time_stamp();
        c.call(std::min(kRaceBlock, n - from), o);
        best[b] = std::min(best[b], static_cast<double>(time_stamp() - start));
      }
    }
  }
  for (const Competitor<R>& c : race.competitors) state.counters[c.name] = cycles(f, c.name, length);
}

void register_benchmarks(bool brief) {
  for (const Function& f : functions()) {
    if (!f.descriptor) continue;
    for (int length : {kInCache, kOutOfCache}) {
      if (brief && length == kOutOfCache) continue;
      const std::string name = f.full_name() + "/" + std::to_string(kLengths[length]);
      const auto body = f.single() ? run<float> : run<double>;
      benchmark::RegisterBenchmark(name.c_str(), [=, &f](benchmark::State& s) { body(s, f, length); })
          ->Iterations(length == kOutOfCache ? 3
                       : brief               ? 30
                                             : 300)
          ->Repetitions(brief ? 1 : 5);
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

#if defined(__x86_64__)
const char* const kTableHead =
    "| kernel | class | cycles | plain loop | SLEEF, 1.0 ulp | SLEEF, 3.5 ulp | glibc vector, 4 ulp |\n"
    "|---|---|---|---|---|---|---|\n";
#else
const char* const kTableHead =
    "| kernel | class | cycles | plain loop | SLEEF, 1.0 ulp | SLEEF, 3.5 ulp |\n"
    "|---|---|---|---|---|---|\n";
#endif

// Benchmarks of kernels on trial have sections of their own.
#if !defined(ORX_BENCH_SECTION)
#define ORX_BENCH_SECTION ""
#endif

// By kernel.
Rows table_of(int length) {
  Rows rows;
  for (const Function& f : functions()) {
    for (const Kernel& k : f.kernels) {
      const double own = cycles(f, k.name, length);
      if (std::isnan(own)) continue;
      std::ostringstream s;
      s << "| `" << k.name << "` | " << k.classes << " | " << text(own);
      for (const char* name : kPeerNames) {
        const double other = cycles(f, name, length);
        s << " | ";
        if (!std::isnan(other)) s << text(other) << " (" << text(other / own) << "x)";
      }
      s << " |\n";
      rows[k.name] = s.str();
    }
  }
  return rows;
}

void write_table(const std::string& file, const std::string& section, const char* head, const Rows& rows) {
  write_section(file, section, merged_table(head, rows, read_section(file, section)));
}

void write_machine(const std::string& file) {
  std::ostringstream s;
  s << "Last written on " << processor_name() << ", " << kCodeWidth << " code, " << kCompilerName
    << ", glibc " << gnu_get_libc_version() << ", SLEEF " << SLEEF_VERSION_MAJOR << "." << SLEEF_VERSION_MINOR
    << "." << SLEEF_VERSION_PATCHLEVEL << ".\n";
  write_section(file, ORX_BENCH_SECTION "machine", s.str());
}

void write_report(const std::string& file) {
  write_table(file, ORX_BENCH_SECTION "in cache", kTableHead, table_of(kInCache));
  write_table(file, ORX_BENCH_SECTION "out of cache", kTableHead, table_of(kOutOfCache));
  write_machine(file);
}

// Rows of the list whose costs are given; those of the others are measured.
bool cost_is_given(const Function& f) {
  for (const char* given : {"sAdd", "dAdd", "sExp", "dExp", "dLinearFrac", "dPow", "cAbs", "cAcos"})
    if (f.full_name() == given) return true;
  return false;
}

// Plain arithmetic hangs on the memory alone and is brought to the scale of Add, all else to that of dExp LA.
bool is_plain(const Function& f) { return f.kernels.front().bound == descriptor::kExact.ha; }

// The geometric mean of given over measured costs of the LA kernels of `names`.
double cost_scale(std::initializer_list<const char*> names) {
  double sum = 0;
  for (const Function& f : functions())
    for (const char* name : names)
      if (f.full_name() == name) sum += std::log(f.cost[0] / cycles(f, f.kernel_of(0).name, kInCache));
  return std::exp(sum / static_cast<double>(names.size()));
}

// Rows with measured costs and a tenth of room; then the kernels that take longer than the list says now.
void print_costs() {
  const double scales[2] = {cost_scale({"dExp"}), cost_scale({"sAdd", "dAdd"})};
  std::cout << "\ncosts: measured times " << text(scales[0]) << ", plain arithmetic times " << text(scales[1])
            << "\n";
  std::ostringstream above;
  for (const Function& f : functions()) {
    if (std::isnan(cycles(f, f.kernels.front().name, kInCache))) continue;
    std::string codes, costs;
    for (int i = 0; i < kClassCount; ++i) {
      const Kernel& k = f.kernel_of(i);
      const double measured = cycles(f, k.name, kInCache) * scales[is_plain(f)];
      codes += k.name.substr(f.full_name().size() + 1) + ", ";
      costs += (i ? ",  " : " ") + text(cost_is_given(f) ? f.cost[i] : 1.1 * measured);
      if (measured > f.cost[i])
        above << k.name << ": " << text(measured) << ", stated " << text(f.cost[i]) << "\n";
    }
    std::printf("ORX_FUNCTION(%-11s %c, %-11s %s%s)\n", (std::string(f.shape->name) + ",").c_str(), f.type,
                (f.name + ",").c_str(), codes.c_str(), costs.c_str());
  }
  std::cout << "\nabove the stated cost\n" << above.str();
}

void print_and_write(const std::string& file, const std::string& section, const char* head,
                     const Rows& rows) {
  std::cout << "\n" << section << "\n" << merged_table(head, rows, "");
  if (!file.empty()) write_table(file, section, head, rows);
}

// bench_tef --calls [--write FILE] [FUNCTION...]
int time_calls(std::vector<std::string> words) {
  std::string file;
  if (words.size() > 1 && words[0] == "--write") {
    file = words[1];
    words.erase(words.begin(), words.begin() + 2);
  }
  Rows calls, elements;
  for (const Function& f : functions()) {
    const bool named = std::count(words.begin(), words.end(), f.full_name()) ||
                       std::count(words.begin(), words.end(), f.name);
    if (!f.shape->elementwise || !f.descriptor || !(words.empty() || named)) continue;
    calls.merge(short_calls(f));
    elements.merge(unusual_elements(f));
  }
  print_and_write(file, "short calls", kShortCallsHead, calls);
  print_and_write(file, "unusual elements", kUnusualHead, elements);
  if (!file.empty()) write_machine(file);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  orx_tef_kernel_SetMode(TEF_HA | TEF_ERRMODE_IGNORE | TEF_FLUSH_OFF);
  if (argc > 1 && argv[1] == std::string("--calls")) return time_calls({argv + 2, argv + argc});
  std::vector<char*> arguments(argv, argv + argc);
  char mixed[] = "--benchmark_enable_random_interleaving=true";
  arguments.insert(arguments.begin() + 1, mixed);
  argc = static_cast<int>(arguments.size());
  argv = arguments.data();
  benchmark::Initialize(&argc, argv);
  std::string file;
  bool costs = false, brief = false;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--costs") {
      costs = true;
    } else if (word == "--short") {
      brief = true;
    } else if (word == "--write" && i + 1 < argc) {
      file = argv[++i];
    } else {
      std::cerr << "usage: bench_tef [--short] [--write FILE] [--costs] [Google Benchmark's options]\n";
      return 2;
    }
  }
  register_benchmarks(brief);
  LastRepetition reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::cout << "\nin cache, cycles per element\n" << merged_table(kTableHead, table_of(kInCache), "");
  if (!brief) std::cout << "\nout of cache\n" << merged_table(kTableHead, table_of(kOutOfCache), "");
  if (costs) print_costs();
  if (!file.empty()) write_report(file);
}
