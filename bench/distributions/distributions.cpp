// Every row of the list of distributions beside the C++ library, Boost.Random and GSL, in cycles of the time-stamp
// counter per number: 10000 numbers a call, the least of all repetitions, in which all take turns.
//   bench_distributions [--write PERFORMANCE GENERATORS] [--one] [NAME]
// --write puts the rows into the marked sections of both documents; --one measures calls of one number.
#include <x86intrin.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "blas.hpp"
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

Runner uniforms_alone() {
  return ours<double>(KOB_BRNG_SFMT19937,
                      [](KobStream* s, int n, double* r) { _kobdRngUniform(0, s, n, r, 0, 1); });
}

// Means from 0.1 to 1000, evenly in the logarithm and in no order, so that all ways of the method are met.
std::vector<double> many_means() {
  std::vector<double> means(kNumbers);
  for (int i = 0; i < kNumbers; ++i)
    means[size_t(i)] = 0.1 * std::pow(10.0, 4.0 * (i * 7919 % kNumbers) / kNumbers);
  return means;
}

Row row_of_means() {
  const std::vector<double> means = many_means();
  const auto draw = [means](KobStream* s, int n, int32_t* r) { _kobiRngPoissonV(0, s, n, r, means.data()); };
  Row row;
  row.name = "PoissonV";
  row.label = "`iPoissonV` means from 0.1 to 1000";
  row.law = "e^-mean mean^k / k!, within 5e-5";
  row.source = "as Poisson's normal method";
  row.uniforms = "1";
  row.sfmt = ours<int32_t>(KOB_BRNG_SFMT19937, draw);
  row.mt = ours<int32_t>(KOB_BRNG_MT19937, draw);
  row.uniform = uniforms_alone();
  const bench::Peers peers = bench::poisson_peers(means);
  row.std = theirs(peers.std);
  row.boost = theirs(peers.boost);
  row.gsl = theirs(peers.gsl);
  return row;
}

// Vectors of normal numbers, whole ones that n numbers hold, one at least; or what they are made of: normal numbers, all of them first,
// and the product with the factor.
template <class Real>
auto vectors(int dimen, bool parts) {
  std::vector<Real> mean(size_t(dimen), 1), factor(size_t(dimen) * size_t(dimen), Real(0.1));
  return [=](KobStream* s, int n, Real* r) {
    const int count = std::max(n / dimen, 1);
    if constexpr (sizeof(Real) == 8) {
      if (!parts) _kobdRngGaussianMV(1, s, count, r, dimen, 0, mean.data(), factor.data());
      if (parts) _kobdRngGaussian(1, s, count * dimen, r, 0, 1);
    } else {
      if (!parts) _kobsRngGaussianMV(1, s, count, r, dimen, 0, mean.data(), factor.data());
      if (parts) _kobsRngGaussian(1, s, count * dimen, r, 0, 1);
    }
    if (parts) orx::rng::blas::multiply_by_upper_transposed(dimen, count, factor.data(), r);
  };
}

Row row_of_vectors(int dimen, bool parts) {
  const std::string dimensions = std::to_string(dimen) + " dimensions";
  Row row;
  row.name = "GaussianMV " + dimensions + (parts ? ", parts" : "");
  row.label = parts ? "the same by normal numbers and BLAS's `dtrmm`"
                    : "`d, sGaussianMV` " + dimensions + ", full factor";
  row.law = "e^(-x' C^-1 x / 2) / sqrt(det(2 pi C))";
  row.source = parts ? "for comparison" : "factor of the covariance times Box-Muller 2";
  row.uniforms = "1";
  row.sfmt = ours<double>(KOB_BRNG_SFMT19937, vectors<double>(dimen, parts));
  row.mt = ours<double>(KOB_BRNG_MT19937, vectors<double>(dimen, parts));
  row.single = ours<float>(KOB_BRNG_SFMT19937, vectors<float>(dimen, parts));
  row.uniform = uniforms_alone();
  return row;
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
    row.uniform = uniforms_alone();
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
  rows.push_back(row_of_means());
  for (const int dimen : {10, 100})
    for (const bool parts : {false, true}) rows.push_back(row_of_vectors(dimen, parts));
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
    if (n == 1 && row.name.find("GaussianMV") == 0) continue;  // numbers are vectors there
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
