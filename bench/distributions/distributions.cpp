// Every row of the list of distributions beside the C++ library, Boost.Random and GSL, in cycles of the time-stamp
// counter per number: 10000 numbers a call, the least of all repetitions, in which all take turns.
//   bench_distributions [--write PERFORMANCE GENERATORS] [--one] [NAME]
// --write puts the rows into the marked sections of both documents; --one measures calls of one number.
#include <x86intrin.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "functions/sections.hpp"
#include "orx/kob.h"
#include "peers.hpp"

namespace {

constexpr int kNumbers = 10000, kRounds = 60;

class Stream {
 public:
  explicit Stream(uint32_t id) {
    const uint32_t seed = 5489;
    __kobNewStreamEx(&stream_, id, 1, &seed);
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() { __kobDeleteStream(&stream_); }
  operator KobStream*() const { return stream_; }

 private:
  KobStream* stream_ = nullptr;
};

// One way of drawing the numbers, and the least of its times.
struct Runner {
  std::function<void(int n)> run;
  double cycles = std::numeric_limits<double>::infinity();

  // A slow peer makes fewer numbers: a call of many milliseconds rarely passes without another process in between.
  void time(int n, int calls) {
    constexpr double most = 1e6;
    const int numbers =
        std::max(std::min(n, int(most / std::max(cycles < 1e300 ? cycles : most / 10, 1.0))), 1);
    const uint64_t start = __rdtsc();
    for (int i = 0; i < calls; ++i) run(numbers);
    cycles = std::min(cycles, double(__rdtsc() - start) / (double(numbers) * calls));
  }
};

struct Row {
  std::string name, label, law, source, uniforms;
  // Ours in double or integers on SFMT19937 and MT19937, in single on SFMT19937; uniforms on SFMT19937; the peers.
  Runner sfmt, mt, single, uniform, std, boost, gsl;
  std::vector<Runner*> all() { return {&sfmt, &mt, &single, &uniform, &std, &boost, &gsl}; }
};

template <class Number, class Draw>
Runner ours(uint32_t id, const Draw& draw) {
  return {[stream = std::make_shared<Stream>(id), r = std::vector<Number>(kNumbers), draw](int n) mutable {
    draw(*stream, n, r.data());
  }};
}
Runner theirs(const bench::Fill& fill) {
  if (!fill) return {};
  return {[fill, r = std::vector<double>(kNumbers)](int n) mutable { fill(r.data(), n); }};
}

std::vector<Row> all_rows() {
  const std::map<std::string, bench::Peers> peers = bench::all_peers();
  std::vector<Row> rows;
  const auto add = [&](bool integer, const std::string& name, const std::string& branch,
                       const std::string& arguments, int uniforms, const char* law, const char* source,
                       Runner sfmt, Runner mt, Runner single) {
    Row row;
    row.name = name + (branch.empty() ? "" : " " + branch);
    row.label = "`" + std::string(integer ? "i" : "d, s") + name + "` " + arguments +
                (branch.empty() ? "" : ", " + branch);
    row.law = law;
    row.source = source;
    row.uniforms = uniforms ? std::to_string(uniforms) : "by rejection";
    row.sfmt = sfmt;
    row.mt = mt;
    row.single = single;
    row.uniform = ours<double>(KOB_BRNG_SFMT19937,
                               [](KobStream* s, int n, double* r) { _kobdRngUniform(0, s, n, r, 0, 1); });
    auto found = peers.find((integer && name == "Uniform" ? "i" : "") + row.name);
    if (found != peers.end()) {
      row.std = theirs(found->second.std);
      row.boost = theirs(found->second.boost);
      row.gsl = theirs(found->second.gsl);
    }
    rows.push_back(row);
  };
#define ORX_ARGUMENTS(...) __VA_ARGS__
#define ORX_DRAW(t, Number, Name, method, ...) \
  [](KobStream* s, int n, Number* r) { _kob##t##Rng##Name(method, s, n, r, __VA_ARGS__); }
#define ORX_DRAW_UNPACKED(...) ORX_DRAW(__VA_ARGS__)
#define ORX_OURS(id, t, Number, Name, arguments) \
  ours<Number>(id, ORX_DRAW_UNPACKED(t, Number, Name, ORX_ARGUMENTS arguments))
#define ORX_ADD_real(Name, branch, arguments, uniforms, law, source) \
  add(false, #Name, branch, #arguments, uniforms, law, source,       \
      ORX_OURS(KOB_BRNG_SFMT19937, d, double, Name, arguments),      \
      ORX_OURS(KOB_BRNG_MT19937, d, double, Name, arguments),        \
      ORX_OURS(KOB_BRNG_SFMT19937, s, float, Name, arguments));
#define ORX_ADD_integer(Name, branch, arguments, uniforms, law, source) \
  add(true, #Name, branch, #arguments, uniforms, law, source,           \
      ORX_OURS(KOB_BRNG_SFMT19937, i, int32_t, Name, arguments),        \
      ORX_OURS(KOB_BRNG_MT19937, i, int32_t, Name, arguments), {});
#define ORX_DISTRIBUTION(result, Name, branch, arguments, uniforms, chunk, law, source) \
  ORX_ADD_##result(Name, branch, arguments, uniforms, law, source)
#include "distributions.def"
#undef ORX_DISTRIBUTION
  return rows;
}

std::string number(double cycles) {
  if (cycles == std::numeric_limits<double>::infinity()) return "";
  char text[32];
  std::snprintf(text, sizeof text, cycles < 100 ? "%.1f" : "%.0f", cycles);
  return text;
}
std::string with_ratio(const Runner& peer, double mine) {
  if (!peer.run) return "";
  char text[48];
  std::snprintf(text, sizeof text, "%s (%.1fx)", number(peer.cycles).c_str(), peer.cycles / mine);
  return text;
}

constexpr char kSpeedHead[] =
    "| method, arguments | SFMT19937 | of a uniform | single | MT19937 | C++ library | Boost | GSL |\n"
    "|---|---|---|---|---|---|---|---|\n";
std::string speed_row(const Row& row) {
  char in_uniforms[16];
  std::snprintf(in_uniforms, sizeof in_uniforms, "%.1f", row.sfmt.cycles / row.uniform.cycles);
  return "| " + row.label + " | " + number(row.sfmt.cycles) + " | " + in_uniforms + " | " +
         number(row.single.cycles) + " | " + number(row.mt.cycles) + " | " +
         with_ratio(row.std, row.mt.cycles) + " | " + with_ratio(row.boost, row.mt.cycles) + " | " +
         with_ratio(row.gsl, row.mt.cycles) + " |\n";
}

constexpr char kLawHead[] =
    "| arguments | law | method | uniforms a number | cycles |\n|---|---|---|---|---|\n";
std::string law_row(const Row& row) {
  return "| " + row.label + " | " + row.law + " | " + row.source + " | " + row.uniforms + " | " +
         number(row.sfmt.cycles) + " |\n";
}

}  // namespace

int main(int argc, char** argv) {
  const char* performance = nullptr;
  const char* generators = nullptr;
  std::string wanted;
  int n = kNumbers, calls = 1;
  for (int i = 1; i < argc; ++i) {
    if (!std::strcmp(argv[i], "--write") && i + 2 < argc) {
      performance = argv[++i];
      generators = argv[++i];
    } else if (!std::strcmp(argv[i], "--one")) {
      n = 1;
      calls = 1000;
    } else {
      wanted = argv[i];
    }
  }
  std::string speeds = kSpeedHead, laws = kLawHead;
  std::fputs(kSpeedHead, stdout);
  for (Row& row : all_rows()) {
    if (row.name.find(wanted) == std::string::npos) continue;
    for (int round = 0; round < kRounds; ++round)
      for (Runner* runner : row.all())
        if (runner->run) runner->time(n, calls);
    std::fputs(speed_row(row).c_str(), stdout);
    std::fflush(stdout);
    speeds += speed_row(row);
    laws += law_row(row);
  }
  if (performance) orx::write_section(performance, "distributions", speeds);
  if (generators) orx::write_section(generators, "distributions", laws);
}
