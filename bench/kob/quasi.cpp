// Quasi-random streams, in cache, beside those of Boost.Random and GSL. `cycles` counts the time-stamp counter, the least
// of all rounds, per number (for skip, creation and copying, per call); `ratio` is how many times faster than
// the peer in the same run.
//
//   bench_kob_quasi --write docs/performance.md    times doubles and writes the section "points"
#include <benchmark/benchmark.h>
#include <x86intrin.h>

#include <algorithm>
#include <iomanip>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "functions/sections.hpp"
#include "orx/kob.h"
#include "quasi_peers.hpp"

namespace {

constexpr const char* kLibraries[] = {"Boost", "GSL"};
constexpr int kBlock = 2000, kRounds = 20;  // numbers of a call, calls of a measurement

std::map<std::string, double> peer;          // cycles, by name and library
std::vector<std::string> rows;               // of doubles, in order
std::map<std::string, double> doubles_made;  // our cycles

// Where all put their numbers: at the beginning of a cache line, so that no run is luckier than another.
template <class Element>
Element* output() {
  alignas(64) static Element r[2 * kBlock];
  return r;
}

class Stream {
 public:
  Stream(uint32_t id, const std::vector<uint32_t>& seed) {
    __kobNewStreamEx(&stream_, id, int(seed.size()), seed.data());
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() { __kobDeleteStream(&stream_); }
  operator KobStream*() { return stream_; }

  void fill(double* r) { _kobdRngUniform(0, stream_, kBlock, r, 0, 1); }
  void fill(float* r) { _kobsRngUniform(0, stream_, kBlock, r, 0, 1); }
  void fill(uint32_t* r) { _kobiRngUniformBits(0, stream_, kBlock, r); }

 private:
  KobStream* stream_ = nullptr;
};

template <class Run>
double cycles(benchmark::State& state, double elements, Run run) {
  double least = std::numeric_limits<double>::infinity();
  for (auto _ : state) {
    const uint64_t start = __rdtsc();
    run();
    least = std::min(least, double(__rdtsc() - start));
  }
  return state.counters["cycles"] = least / elements;
}

template <class Body>
void add(const std::string& name, Body body) {
  benchmark::RegisterBenchmark(name.c_str(), body);
}

// Seed words of a stream with a matrix of the caller's own.
std::vector<uint32_t> matrix_seed(uint32_t dimension) {
  std::vector<uint32_t> seed(3 + 32 * dimension, 0x80000000);
  seed[0] = dimension, seed[1] = 1, seed[2] = 4;
  return seed;
}

// The stream is moved back by a copy for each round, so that the index never comes to its end.
template <class Element>
void fill(const std::string& name, const char* type, uint32_t id, const std::vector<uint32_t>& seed,
          int selected = -1) {
  if (sizeof(Element) == sizeof(double)) rows.push_back(name);
  add(name + type, [=](benchmark::State& state) {
    Stream start(id, seed), stream(id, seed);
    if (selected >= 0) __kobLeapfrogStream(start, uint32_t(selected), 0x7FFFFFFF);
    Element* const r = output<Element>();
    double least = std::numeric_limits<double>::infinity();
    for (auto _ : state) {
      __kobCopyStreamState(stream, start);
      const uint64_t begin = __rdtsc();
      for (int k = 0; k < kRounds; ++k) {
        stream.fill(r);
        benchmark::DoNotOptimize(r);
      }
      least = std::min(least, double(__rdtsc() - begin));
    }
    const double ours = least / (kBlock * kRounds);
    state.counters["cycles"] = ours;
    if (sizeof(Element) == sizeof(double)) doubles_made[name] = ours;
    for (const char* library : kLibraries)
      if (peer.count(name + library))
        state.counters[std::string("ratio_") + library] = peer[name + library] / ours;
  });
}

void race(const std::string& name, uint32_t id, unsigned dimension) {
  for (const QuasiPeer& p : quasi_peers(id, dimension))
    add(name + p.library, [=](benchmark::State& state) {
      double* const r = output<double>();
      const int points = kBlock / int(dimension);
      peer[name + p.library] = cycles(state, double(points) * dimension * kRounds, [&] {
        for (int k = 0; k < kRounds; ++k) {
          p.fill(r, points);
          benchmark::DoNotOptimize(r);
        }
      });
    });
}

void fills() {
  for (uint32_t dimension : {1, 2, 3, 8, 16, 40}) {
    const std::string name = "Sobol/" + std::to_string(dimension) + "/";
    race(name, KOB_BRNG_SOBOL, dimension);
    fill<double>(name, "doubles", KOB_BRNG_SOBOL, {dimension});
    fill<float>(name, "singles", KOB_BRNG_SOBOL, {dimension});
    fill<uint32_t>(name, "words", KOB_BRNG_SOBOL, {dimension});
  }
  fill<double>("Sobol/component 17 of 40/", "doubles", KOB_BRNG_SOBOL, {40}, 17);
  for (uint32_t dimension : {12, 100, 318}) {
    const std::string name = "Niederreiter/" + std::to_string(dimension) + "/";
    race(name, KOB_BRNG_NIEDERR, dimension);
    fill<double>(name, "doubles", KOB_BRNG_NIEDERR, {dimension});
  }
  fill<double>("Niederreiter, own matrix/400/", "doubles", KOB_BRNG_NIEDERR, matrix_seed(400));
}

void calls() {
  // The second changes all bits of the Gray code but one, the most there is to do.
  for (const uint64_t points : {uint64_t(1) << 31, uint64_t(0xAAAAAAA9)})
    add("skip " + std::to_string(points) + " points/Sobol/40", [=](benchmark::State& state) {
      Stream start(KOB_BRNG_SOBOL, {40}), stream(KOB_BRNG_SOBOL, {40});
      double least = std::numeric_limits<double>::infinity();
      for (auto _ : state) {
        __kobCopyStreamState(stream, start);
        const uint64_t begin = __rdtsc();
        __kobSkipAheadStream(stream, points * 40);
        least = std::min(least, double(__rdtsc() - begin));
      }
      state.counters["cycles"] = least;
    });
  for (uint32_t dimension : {1000, 2000, 4000}) {
    const std::vector<uint32_t> seed = matrix_seed(dimension);
    add("create with a matrix/Sobol/" + std::to_string(dimension),
        [=](benchmark::State& state) { cycles(state, 1, [&] { Stream stream(KOB_BRNG_SOBOL, seed); }); });
    add("copy with a matrix/Sobol/" + std::to_string(dimension), [=](benchmark::State& state) {
      Stream stream(KOB_BRNG_SOBOL, seed);
      cycles(state, 1, [&] {
        KobStream* copy = nullptr;
        __kobCopyStream(&copy, stream);
        __kobDeleteStream(&copy);
      });
    });
  }
  add("true random/doubles", [](benchmark::State& state) {
    Stream stream(KOB_BRNG_TRNG, {});
    cycles(state, kBlock, [&] { stream.fill(output<double>()); });
  });
}

std::string table() {
  std::ostringstream s;
  s << std::fixed << std::setprecision(2)
    << "| sequence, dimension | cycles | Boost | GSL |\n|---|---|---|---|\n";
  for (const std::string& name : rows) {
    const double ours = doubles_made[name];
    s << "| " << name.substr(0, name.size() - 1) << " | " << ours;
    for (const char* library : kLibraries) {
      s << " | ";
      if (const auto theirs = peer.find(name + library); theirs != peer.end())
        s << theirs->second << " (" << theirs->second / ours << "x)";
    }
    s << " |\n";
  }
  return s.str();
}

}  // namespace

int main(int argc, char** argv) {
  fills();
  if (argc == 3 && argv[1] == std::string("--write")) {
    int none = 1;
    benchmark::Initialize(&none, argv);
    benchmark::RunSpecifiedBenchmarks();
    orx::write_section(argv[2], "points", table());
    return 0;
  }
  calls();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
