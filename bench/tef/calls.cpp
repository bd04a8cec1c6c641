#include "calls.hpp"

#include <limits>
#include <sstream>

#include "orx/tef.h"
#include "race.hpp"

using namespace orx;

namespace {

std::string text(double x) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, x < 10 ? "%.1f" : "%.0f", x);
  return buffer;
}

// The least cycles of a call out of many, several being timed at once.
template <class Call>
double least_cycles(Call call, int at_once, int repetitions) {
  double least = INFINITY;
  _mm256_zeroupper();
  for (int r = 0; r < repetitions; ++r) {
    const uint64_t start = time_stamp();
    for (int k = 0; k < at_once; ++k) call();
    least = std::min(least, static_cast<double>(time_stamp() - start) / at_once);
  }
  return least;
}

template <class R>
double short_call(const Race<R>& race, const Competitor<R>& c, int n, int offset) {
  const Operands<R> o = race.operands_at(offset);
  return least_cycles([&] { c.call(n, o); }, 32, 300);
}

template <class R>
Rows short_calls_of(const Function& f) {
  const Race<R> race(f, 64);
  const Competitor<R>* sleef = nullptr;
  for (const Competitor<R>& c : race.competitors)
    if (c.name == kPeerNames[static_cast<int>(PeerKind::SleefBest)]) sleef = &c;
  Rows rows;
  for (size_t k = 0; k < f.kernels.size(); ++k) {
    std::ostringstream s;
    s << "| `" << f.kernels[k].name << "` | " << f.kernels[k].classes;
    for (int n : {0, 1, 4, 8, 16}) s << " | " << text(short_call(race, race.competitors[k], n, 0));
    double worst = 0;
    for (int offset = 1; offset < 32 / static_cast<int>(sizeof(R)); ++offset)
      worst = std::max(worst, short_call(race, race.competitors[k], 16, offset));
    s << " | " << text(worst);
    for (int n : {8, 16}) s << " | " << (sleef ? text(short_call(race, *sleef, n, 0)) : "");
    s << " |\n";
    rows[f.kernels[k].name] = s.str();
  }
  return rows;
}

// Vectors of one kind.
template <class R>
struct Filling {
  std::string name;
  R from, to;  // log-uniform between, of one sign; equal: all the same
};

template <class R>
std::vector<Filling<R>> fillings() {
  using Limits = std::numeric_limits<R>;
  const R tiny = Limits::min() * 16, least = Limits::denorm_min(), large = Limits::max() / 16;
  std::vector<Filling<R>> all = {{"NaN", Limits::quiet_NaN(), Limits::quiet_NaN()}};
  for (R sign : {R(1), R(-1)}) {
    const std::string minus = sign < 0 ? "-" : "";
    all.push_back({minus + "0", sign * 0, sign * 0});
    all.push_back({minus + "denormal", sign * least, sign * Limits::min()});
    all.push_back({minus + "tiny", sign * tiny, sign * Limits::epsilon() / 16});
    all.push_back({minus + "large", sign * 32, sign * std::sqrt(large)});
    all.push_back({minus + "huge", sign * std::sqrt(large), sign * large});
    all.push_back({minus + "inf", sign * Limits::infinity(), sign * Limits::infinity()});
  }
  return all;
}

template <class R>
void fill(R* x, int n, const Filling<R>& kind, std::mt19937& random) {
  std::uniform_real_distribution<double> share(0, 1);
  const double low = std::log2(std::fabs(static_cast<double>(kind.from))),
               high = std::log2(std::fabs(static_cast<double>(kind.to)));
  const bool constant = !(std::fabs(kind.from) < std::fabs(kind.to));
  for (int i = 0; i < n; ++i)
    x[i] = constant ? kind.from
                    : static_cast<R>(std::copysign(std::exp2(low + share(random) * (high - low)),
                                                   static_cast<double>(kind.from)));
}

template <class R>
Rows unusual_elements_of(const Function& f) {
  constexpr int n = 1000;
  const Race<R> race(f, n);
  const Operands<R> usual = race.operands_at(0);
  std::mt19937 random(1);
  Rows rows;
  for (size_t k = 0; k < f.kernels.size(); ++k) {
    const auto cycles = [&](const Operands<R>& o) {
      return least_cycles([&] { race.competitors[k].call(n, o); }, 1, 200) / n;
    };
    const double own = cycles(usual);
    double right = 0, error = 0;
    std::string slowest_right, slowest_error;
    for (const Filling<R>& kind : fillings<R>()) {
      Operands<R> o = usual;
      std::vector<R> vectors[2];
      for (int j = 0; j < f.shape->inputs; ++j) {
        vectors[j].resize(static_cast<size_t>(n * f.in_width()));
        fill(vectors[j].data(), n * f.in_width(), kind, random);
        o.in[j] = vectors[j].data();
      }
      _tefClearErrStatus();
      race.competitors[k].call(n, o);
      const bool in_error = _tefGetErrStatus() != StatusOk;
      const double found = cycles(o);
      double& slowest = in_error ? error : right;
      if (found <= slowest) continue;
      slowest = found;
      (in_error ? slowest_error : slowest_right) = kind.name;
    }
    std::ostringstream s;
    s << "| `" << f.kernels[k].name << "` | " << f.kernels[k].classes << " | " << text(own) << " | "
      << text(right) << " (" << slowest_right << ") | " << text(right / own) << " | ";
    if (error > 0) s << text(error) << " (" << slowest_error << ")";
    s << " |\n";
    rows[f.kernels[k].name] = s.str();
  }
  return rows;
}

}  // namespace

const char* const kShortCallsHead =
    "| kernel | class | n = 0 | 1 | 4 | 8 | 16 | 16, worst offset | SLEEF 1.0, 8 | 16 |\n"
    "|---|---|---|---|---|---|---|---|---|---|\n";
Rows short_calls(const Function& f) {
  return f.single() ? short_calls_of<float>(f) : short_calls_of<double>(f);
}

const char* const kUnusualHead =
    "| kernel | class | usual | slowest that are no errors | times usual | slowest in error |\n"
    "|---|---|---|---|---|---|\n";
Rows unusual_elements(const Function& f) {
  return f.single() ? unusual_elements_of<float>(f) : unusual_elements_of<double>(f);
}
