// The twisters against std::mt19937 and std::uniform_real_distribution, in cache.  The figures are processor
// cycles by the time-stamp counter, the least of all rounds, for each 32-bit word or number; for the creation
// of a stream, in all.
#include <benchmark/benchmark.h>
#include <x86intrin.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "orx/kob.h"

namespace {

// Blocks as the distribution generators take them; so many a round that each twister renews its state in it
// about as often as in any other round.
constexpr int kBlock = 1024, kBlocks = 39;
constexpr int kSeeds = 624;

template <class Run>
void cycles(benchmark::State& state, double elements, Run run) {
  double least = std::numeric_limits<double>::infinity();
  for (auto _ : state) {
    const uint64_t start = __rdtsc();
    run();
    least = std::min(least, double(__rdtsc() - start));
  }
  state.counters["cycles"] = least / elements;
}

template <class Element, class Fill>
void fill_cycles(benchmark::State& state, Fill fill) {
  std::vector<Element> r(kBlock);
  cycles(state, kBlock * kBlocks, [&] {
    for (int i = 0; i < kBlocks; ++i) {
      fill(r);
      benchmark::DoNotOptimize(r.data());
    }
  });
}

class Stream {
 public:
  explicit Stream(uint32_t id) {
    const uint32_t seed = 5489;
    __kobNewStreamEx(&stream_, id, 1, &seed);
    __kobGetBrngProperties(id, &properties_);
  }
  ~Stream() { __kobDeleteStream(&stream_); }
  void fill(std::vector<uint32_t>& r) {
    properties_.iGenerate(stream_, int(r.size()) * 4 / properties_.WordSize, r.data());
  }
  void fill(std::vector<float>& r) { properties_.sGenerate(stream_, int(r.size()), r.data(), 0, 1); }
  void fill(std::vector<double>& r) { properties_.dGenerate(stream_, int(r.size()), r.data(), 0, 1); }

 private:
  KobStream* stream_;
  KobBrngProperties properties_;
};

template <class Element>
void ours(benchmark::State& state, uint32_t id) {
  Stream stream(id);
  fill_cycles<Element>(state, [&](auto& r) { stream.fill(r); });
}

void std_words(benchmark::State& state) {
  std::mt19937 engine;
  fill_cycles<uint32_t>(state, [&](auto& r) {
    for (uint32_t& x : r) x = engine();
  });
}

template <class Real>
void std_reals(benchmark::State& state) {
  std::mt19937 engine;
  std::uniform_real_distribution<Real> uniform;
  fill_cycles<Real>(state, [&](auto& r) {
    for (Real& x : r) x = uniform(engine);
  });
}

// The array initialisation by itself, as its authors wrote it down.
void seed_mt19937(uint32_t* mt, const uint32_t* key, int n) {
  mt[0] = 19650218;
  for (int i = 1; i < 624; ++i) mt[i] = 1812433253 * (mt[i - 1] ^ (mt[i - 1] >> 30)) + i;
  int i = 1, j = 0;
  for (int k = std::max(624, n); k; --k) {
    mt[i] = (mt[i] ^ ((mt[i - 1] ^ (mt[i - 1] >> 30)) * 1664525)) + key[j] + j;
    if (++i >= 624) mt[0] = mt[623], i = 1;
    if (++j >= n) j = 0;
  }
  for (int k = 623; k; --k) {
    mt[i] = (mt[i] ^ ((mt[i - 1] ^ (mt[i - 1] >> 30)) * 1566083941)) - i;
    if (++i >= 624) mt[0] = mt[623], i = 1;
  }
  mt[0] = 0x80000000;
}

void seeding_alone(benchmark::State& state) {
  uint32_t mt[624];
  const std::vector<uint32_t> seed(kSeeds, 5489);
  cycles(state, 1, [&] {
    seed_mt19937(mt, seed.data(), kSeeds);
    benchmark::DoNotOptimize(mt);
  });
}

void create(benchmark::State& state, uint32_t id) {
  const std::vector<uint32_t> seed(kSeeds, 5489);
  cycles(state, 1, [&] {
    KobStream* stream;
    __kobNewStreamEx(&stream, id, kSeeds, seed.data());
    __kobDeleteStream(&stream);
  });
}

void copy(benchmark::State& state, uint32_t id) {
  const std::vector<uint32_t> seed(kSeeds, 5489);
  KobStream *source, *stream;
  __kobNewStreamEx(&source, id, kSeeds, seed.data());
  cycles(state, 1, [&] {
    __kobCopyStream(&stream, source);
    __kobDeleteStream(&stream);
  });
  __kobDeleteStream(&source);
}

struct Generator {
  const char* name;
  uint32_t id;
};
constexpr Generator kTwisters[] = {
    {"MT19937", KOB_BRNG_MT19937}, {"MT2203", KOB_BRNG_MT2203}, {"SFMT19937", KOB_BRNG_SFMT19937}};

template <class Run>
void each(const std::string& kind, Run run) {
  for (const Generator& g : kTwisters) {
    benchmark::RegisterBenchmark((kind + g.name).c_str(), run, g.id);
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::RegisterBenchmark("words/std::mt19937", std_words);
  each("words/", ours<uint32_t>);
  benchmark::RegisterBenchmark("doubles/std::mt19937", std_reals<double>);
  each("doubles/", ours<double>);
  benchmark::RegisterBenchmark("singles/std::mt19937", std_reals<float>);
  each("singles/", ours<float>);
  benchmark::RegisterBenchmark("create/the seeding of MT19937 alone", seeding_alone);
  each("create/", create);
  each("copy/", copy);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
