// Streams and uniform numbers, in cache, against std::mt19937 and std::uniform_real_distribution over it.
// `cycles` counts the time-stamp counter, the least of all rounds, per 32-bit word or per number; for
// creation, copying, skipping per call. `ratio` is how many times faster than the peer in the same run:
// plain, as compilers build it by default, and avx, with the flags of our kernels.
//
//   bench_kob_streams --write docs/performance.md    times doubles beside Boost.Random and GSL, in blocks and one
//                                                    to a call, and numbers of 64 bits beside those of 32, and writes
//                                                    the sections "streams" and "wide numbers"
#include <benchmark/benchmark.h>
#include <x86intrin.h>

#include <algorithm>
#include <iomanip>
#include <limits>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "functions/sections.hpp"
#include "orx/kob.h"
#include "peers.hpp"
#include "std_random.hpp"

namespace {

// Blocks as the distribution generators take them, so many in a round that the larger states are renewed
// about as often in one round as in another.
constexpr int kBlock = 1024, kBlocks = 39;

struct Generator {
  const char* name;
  uint32_t id;
};
constexpr Generator kGenerators[] = {
    {"MCG31M1", KOB_BRNG_MCG31M1},
    {"R250", KOB_BRNG_R250},
    {"MRG32K3A", KOB_BRNG_MRG32K3A},
    {"MCG59", KOB_BRNG_MCG59},
    {"WH", KOB_BRNG_WH},
    {"MT19937", KOB_BRNG_MT19937},
    {"MT2203", KOB_BRNG_MT2203},
    {"SFMT19937", KOB_BRNG_SFMT19937},
};

class Stream {
 public:
  explicit Stream(uint32_t id) {
    const uint32_t seed = 5489;
    __kobNewStreamEx(&stream_, id, 1, &seed);
    __kobGetBrngProperties(id, &properties_);
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() { __kobDeleteStream(&stream_); }
  operator KobStream*() { return stream_; }

  void fill(uint32_t* r, int n) { properties_.iGenerate(stream_, n * 4 / properties_.WordSize, r); }
  void fill(float* r, int n) { _kobsRngUniform(0, stream_, n, r, 0, 1); }
  void fill(double* r, int n) { _kobdRngUniform(0, stream_, n, r, 0, 1); }

 private:
  KobStream* stream_ = nullptr;
  KobBrngProperties properties_;
};

std::map<std::string, double> least;  // cycles, by name of the benchmark
std::map<std::string, double> peer;   // cycles of what was measured as a peer, by kind

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

// fill(r, times) makes `times` times kBlock numbers.
template <class Element, class Fill>
double fill_cycles(benchmark::State& state, Fill fill) {
  std::vector<Element> r(kBlock);
  return cycles(state, kBlock * kBlocks, [&] {
    fill(r.data(), kBlocks);
    benchmark::DoNotOptimize(r.data());
  });
}

void ratios(benchmark::State& state, const std::string& kind, double ours) {
  for (const char* flavour : {"plain", "avx"}) {
    const auto found = peer.find(kind + flavour);
    if (found != peer.end()) state.counters[std::string("ratio_") + flavour] = found->second / ours;
  }
}

template <class Element>
void fills(const std::string& kind) {
  const auto add_peer = [&](const std::string& flavour, void (*fill)(Element*, int, int)) {
    benchmark::RegisterBenchmark((kind + "/std::mt19937/" + flavour).c_str(), [=](benchmark::State& state) {
      peer[kind + flavour] =
          fill_cycles<Element>(state, [=](Element* r, int times) { fill(r, kBlock, times); });
    });
  };
  add_peer("plain", plain::std_random);
  add_peer("avx", avx::std_random);
  for (const Generator& g : kGenerators)
    benchmark::RegisterBenchmark((kind + "/" + g.name).c_str(), [=](benchmark::State& state) {
      Stream stream(g.id);
      ratios(state, kind, fill_cycles<Element>(state, [&](Element* r, int times) {
               for (int k = 0; k < times; ++k) stream.fill(r, kBlock);
             }));
    });
}

// Numbers in blocks, and by calls for one each, beside the other libraries'. `block` fills r; `one` makes a number, by a
// function call that is not inlined.
template <class Block, class One>
void add_race(const std::string& name, Block block, One one) {
  benchmark::RegisterBenchmark(("race/" + name).c_str(), [=](benchmark::State& state) {
    least[name] = fill_cycles<double>(state, [&](double* r, int times) {
      for (int k = 0; k < times; ++k) block(r, kBlock);
    });
  });
  benchmark::RegisterBenchmark(("race, one call/" + name).c_str(), [=](benchmark::State& state) {
    least["one call/" + name] = fill_cycles<double>(state, [&](double* r, int times) {
      for (int i = 0; i < kBlock * times; ++i) one(r);
    });
  });
}

void races() {
  for (const Generator& g : kGenerators) {
    const auto stream = std::make_shared<Stream>(g.id);
    KobStream* const s = *stream;
    add_race(
        g.name, [stream](double* r, int n) { stream->fill(r, n); },
        [s](double* r) { _kobdRngUniform(0, s, 1, r, 0, 1); });
    for (const Peer& p : peers())
      if (p.id == g.id)
        add_race(std::string(g.name) + "/" + p.library, p.fill, [fill = p.fill](double* r) { fill(r, 1); });
  }
}

// Rows of the document: ours, then each library's with how many times as fast we are.
std::string table() {
  std::ostringstream s;
  s << std::fixed << std::setprecision(2)
    << "| generator | cycles | Boost | GSL | one call | Boost | GSL |\n|---|---|---|---|---|---|---|\n";
  for (const Generator& g : kGenerators) {
    s << "| `" << g.name << "`";
    for (const std::string& prefix : {std::string(), std::string("one call/")}) {
      const double ours = least[prefix + g.name];
      s << " | " << ours;
      for (const char* library : {"Boost", "GSL"}) {
        s << " | ";
        for (const Peer& p : peers())
          if (p.id == g.id && p.library == std::string(library)) {
            const double theirs = least[prefix + g.name + "/" + library];
            s << theirs << " (" << theirs / ours << "x)";
            if (p.generator != std::string("the same")) s << ' ' << p.generator;
          }
      }
    }
    s << " |\n";
  }
  return s.str();
}

// Numbers made of 64 bits beside those of one word. The range of the integers is of no matter to either.
struct Wide {
  const char *plain, *wide;
  void (*fill_plain)(KobStream* s, double* r);
  void (*fill_wide)(KobStream* s, double* r);
};
constexpr Wide kWide[] = {
    {"doubles", "of 53 bits", [](KobStream* s, double* r) { _kobdRngUniform(0, s, kBlock, r, 0, 1); },
     [](KobStream* s, double* r) { orx_kob_dRngUniform53(0, s, kBlock, r, 0, 1); }},
    {"integers", "exact",
     [](KobStream* s, double* r) { _kobiRngUniform(0, s, kBlock, reinterpret_cast<int*>(r), -10, 1000); },
     [](KobStream* s, double* r) {
       orx_kob_iRngUniformExact(0, s, kBlock, reinterpret_cast<int32_t*>(r), -10, 1000);
     }},
};
constexpr uint32_t kWideIds[] = {KOB_BRNG_R250, KOB_BRNG_MCG59, KOB_BRNG_MT19937, KOB_BRNG_MT2203,
                                 KOB_BRNG_SFMT19937};
const char* name_of(uint32_t id) {
  return std::find_if(std::begin(kGenerators), std::end(kGenerators), [=](auto& g) { return g.id == id; })
      ->name;
}

void wide_numbers() {
  const auto add = [](const std::string& name, uint32_t id, auto fill) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
      Stream stream(id);
      least[name] = fill_cycles<double>(state, [&](double* r, int times) {
        for (int k = 0; k < times; ++k) fill(stream, r);
      });
    });
  };
  for (const uint32_t id : kWideIds)
    for (const Wide& w : kWide) {
      add(std::string("wide/") + w.plain + "/" + name_of(id), id, w.fill_plain);
      add(std::string("wide/") + w.wide + "/" + name_of(id), id, w.fill_wide);
    }
}

std::string wide_table() {
  std::ostringstream s;
  s << std::fixed << std::setprecision(2)
    << "| generator | doubles | of 53 bits | integers | exact |\n|---|---|---|---|---|\n";
  for (const uint32_t id : kWideIds) {
    s << "| `" << name_of(id) << "`";
    for (const Wide& w : kWide) {
      const double plain = least[std::string("wide/") + w.plain + "/" + name_of(id)],
                   wide = least[std::string("wide/") + w.wide + "/" + name_of(id)];
      s << " | " << plain << " | " << wide << " (" << wide / plain << " times)";
    }
    s << " |\n";
  }
  return s.str();
}

void discrete() {
  const auto add = [](const char* name, auto generate) {
    benchmark::RegisterBenchmark(name, [=](benchmark::State& state) {
      Stream stream(KOB_BRNG_SFMT19937);
      fill_cycles<int32_t>(state, [&](int32_t* r, int times) {
        for (int k = 0; k < times; ++k) generate(stream, r);
      });
    });
  };
  add("discrete/Uniform", [](KobStream* s, int32_t* r) { _kobiRngUniform(0, s, kBlock, r, -10, 1000); });
  add("discrete/UniformBits32",
      [](KobStream* s, int32_t* r) { _kobiRngUniformBits32(0, s, kBlock, reinterpret_cast<uint32_t*>(r)); });
  add("discrete/Bernoulli", [](KobStream* s, int32_t* r) { _kobiRngBernoulli(0, s, kBlock, r, 0.3); });
  add("discrete/Geometric", [](KobStream* s, int32_t* r) { _kobiRngGeometric(0, s, kBlock, r, 0.3); });
}

// The array initialisation of MT19937 by itself, as its authors wrote it down.
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

void streams() {
  static const std::vector<uint32_t> seed(624, 5489);
  benchmark::RegisterBenchmark("create/the seeding of MT19937 alone", [](benchmark::State& state) {
    uint32_t mt[624];
    cycles(state, 1, [&] {
      seed_mt19937(mt, seed.data(), int(seed.size()));
      benchmark::DoNotOptimize(mt);
    });
  });
  for (const Generator& g : kGenerators) {
    benchmark::RegisterBenchmark((std::string("create/") + g.name).c_str(), [=](benchmark::State& state) {
      cycles(state, 1, [&] {
        KobStream* stream = nullptr;
        __kobNewStreamEx(&stream, g.id, int(seed.size()), seed.data());
        __kobDeleteStream(&stream);
      });
    });
    benchmark::RegisterBenchmark((std::string("copy/") + g.name).c_str(), [=](benchmark::State& state) {
      Stream source(g.id);
      cycles(state, 1, [&] {
        KobStream* stream = nullptr;
        __kobCopyStream(&stream, source);
        __kobDeleteStream(&stream);
      });
    });
    if (__kobSkipAheadStream(Stream(g.id), 1) == KOB_STATUS_OK)
      benchmark::RegisterBenchmark(
          (std::string("skip 2^60/") + g.name).c_str(), [=](benchmark::State& state) {
            Stream stream(g.id);
            cycles(state, 1, [&] { __kobSkipAheadStream(stream, uint64_t(1) << 60); });
          });
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && argv[1] == std::string("--write")) {
    races();
    wide_numbers();
    int none = 1;
    benchmark::Initialize(&none, argv);
    benchmark::RunSpecifiedBenchmarks();
    orx::write_section(argv[2], "streams", table());
    orx::write_section(argv[2], "wide numbers", wide_table());
    return 0;
  }
  fills<uint32_t>("words");
  fills<double>("doubles");
  fills<float>("singles");
  races();
  wide_numbers();
  discrete();
  streams();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
