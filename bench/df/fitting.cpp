// Data fitting beside GSL's spline family, in one run. Each figure is the least of all repetitions, in cycles
// of the time-stamp counter per point, site or pair. What runs on one thread is timed by the thread's own
// processor time, so that a busy machine does not count; what runs on two by the clock. --benchmark_filter
// picks some. After the benchmarks all rows are printed with their ratios; --write FILE puts them into the marked
// section of that document.
#include <benchmark/benchmark.h>
#include <gsl/gsl_spline.h>
#include <time.h>
#include <x86intrin.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "functions/sections.hpp"
#include "orx/df.h"

namespace {

std::map<std::string, double> figures;

double seconds(clockid_t clock) {
  timespec now;
  clock_gettime(clock, &now);
  return double(now.tv_sec) + 1e-9 * double(now.tv_nsec);
}

// Cycles of the time-stamp counter in a second.
double counter_rate() {
  static const double rate = [] {
    const double from = seconds(CLOCK_MONOTONIC);
    const uint64_t start = __rdtsc();
    while (seconds(CLOCK_MONOTONIC) - from < 0.1) {
    }
    return double(__rdtsc() - start) / (seconds(CLOCK_MONOTONIC) - from);
  }();
  return rate;
}

// Runs `work` again and again and notes the least cycles per element under `name`.
template <class Work>
void measure(const std::string& name, double elements, Work work) {
  const bool threaded = name.find("threads") != std::string::npos;
  benchmark::RegisterBenchmark(name.c_str(),
                               [=](benchmark::State& state) mutable {
                                 const clockid_t clock = threaded ? CLOCK_MONOTONIC : CLOCK_THREAD_CPUTIME_ID;
                                 double best = figures.count(name) ? figures[name] : 1e30;
                                 for (auto _ : state) {
                                   const double start = seconds(clock);
                                   work();
                                   best =
                                       std::min(best, (seconds(clock) - start) * counter_rate() / elements);
                                 }
                                 state.counters["cycles"] = figures[name] = best;
                               })
      ->Unit(benchmark::kMillisecond)
      ->MinTime(0.4);
}

std::vector<double> uniform_random(size_t n, double low, double high, unsigned seed) {
  std::mt19937_64 random(seed);
  std::uniform_real_distribution<double> value(low, high);
  std::vector<double> v(n);
  for (double& x : v) x = value(random);
  return v;
}

std::vector<double> sorted_random(size_t n, double low, double high, unsigned seed) {
  auto v = uniform_random(n, low, high, seed);
  std::sort(v.begin(), v.end());
  return v;
}

// Breakpoints 0 to n - 1 with jitter.
std::vector<double> make_grid(size_t n) {
  auto x = uniform_random(n, -0.3, 0.3, 1);
  for (size_t i = 0; i < n; ++i) x[i] += double(i);
  return x;
}

int32_t build_linear(DFTask* task, int64_t, int64_t, const ThreadingServices* threads) {
  return orx_df_kernel_dDFLinearSpline1D(task, 0, 0, 0, threads);
}
int32_t build_quadratic(DFTask* task, int64_t, int64_t, const ThreadingServices* threads) {
  return orx_df_kernel_dDFQuadraticSpline1D(task, 0, 0, 0, threads);
}

// What the splines are described by, and which function builds them. All inner conditions may be zeros but
// for the Subbotin spline's, which are its knots.
struct Kind {
  const char* name;
  int64_t order, kind, boundary, inner;
  int32_t (*build)(DFTask* task, int64_t, int64_t, const ThreadingServices* threads);
};
constexpr int64_t kFirsts = ORX_DF_FIRST_LEFT | ORX_DF_FIRST_RIGHT;
constexpr Kind kLinear = {"linear", 2, ORX_DF_DEFAULT, 0, 0, build_linear};
constexpr Kind kQuadratic = {"quadratic", 3, ORX_DF_DEFAULT, ORX_DF_QUADRATIC_VALUE, 0, build_quadratic};
constexpr Kind kSubbotin = {"subbotin", 3, ORX_DF_SUBBOTIN, kFirsts, ORX_DF_KNOTS, build_quadratic};
constexpr Kind kNatural = {"natural",       4, ORX_DF_NATURAL,
                           ORX_DF_FREE_END, 0, orx_df_kernel_dDFNaturalCubicSpline1D};
constexpr Kind kDefault = {"default", 4, ORX_DF_DEFAULT, kFirsts, 1, orx_df_kernel_dDFDefaultCubicSpline1D};
constexpr Kind kHermite = {"hermite", 4, ORX_DF_HERMITE, kFirsts, 1, orx_df_kernel_dDFHermiteCubicSpline1D};
constexpr Kind kBessel = {"bessel",        4, ORX_DF_BESSEL,
                          ORX_DF_FREE_END, 0, orx_df_kernel_dDFBesselCubicSpline1D};
constexpr Kind kAkima = {"akima", 4, ORX_DF_AKIMA, ORX_DF_FREE_END, 0, orx_df_kernel_dDFAkimaCubicSpline1D};

// Spline of ours and of GSL over the same data.
struct Pair {
  Pair(size_t n, size_t count, bool uniform, const Kind& spline_kind, const gsl_interp_type* type)
      : kind(spline_kind),
        x(make_grid(n)),
        y(uniform_random(n * count, -1, 1, 2)),
        inner(n + 1),
        coeffs(4 * n * count),
        ends{0, double(n - 1)} {
    if (uniform)
      for (size_t i = 0; i < n; ++i) x[i] = double(i);
    if (kind.inner & ORX_DF_KNOTS) {
      inner.front() = x.front(), inner.back() = x.back();
      for (size_t i = 1; i < n; ++i) inner[i] = (x[i - 1] + x[i]) / 2;
    }
    orx_df_kernel_dNewTask1D(&task, int64_t(n), uniform ? ends : x.data(), uniform ? 4 : 1, int64_t(count),
                             y.data(), 16, 0);
    orx_df_kernel_dEditPPSpline1D(task, kind.order, kind.kind, kind.boundary, values, kind.inner,
                                  kind.inner ? inner.data() : nullptr, coeffs.data(), 0);
    gsl = gsl_spline_alloc(type, n);
    accel = gsl_interp_accel_alloc();
    if (const int32_t status = build(orx_serv_threading_serial()))
      std::printf("%s spline: status %d\n", kind.name, status);
    build_gsl(0);
  }
  int32_t build(const ThreadingServices* threads) { return kind.build(task, 0, 0, threads); }
  void build_gsl(size_t function) { gsl_spline_init(gsl, x.data(), &y[function * x.size()], x.size()); }
  void evaluate(const std::vector<double>& sites, std::vector<double>& result, int64_t hint,
                const ThreadingServices* threads, const std::vector<int32_t>& orders = {}) {
    orx_df_kernel_dDFInterpolate1D(task, ORX_DF_VALUES, 0, int64_t(sites.size()), sites.data(), hint,
                                   int64_t(orders.size()), orders.data(), nullptr, result.data(), 0, nullptr,
                                   nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                   threads);
  }
  void evaluate_gsl(const std::vector<double>& sites, std::vector<double>& result) {
    for (size_t i = 0; i < sites.size(); ++i) result[i] = gsl_spline_eval(gsl, sites[i], accel);
  }

  const Kind& kind;
  std::vector<double> x, y, inner, coeffs;
  double ends[2], values[2] = {};
  DFTask* task = nullptr;
  gsl_spline* gsl;
  gsl_interp_accel* accel;
};

constexpr size_t kMillion = 1000000, kPairs = 100000;
std::vector<double> result(4 * kMillion);
std::vector<int32_t> cells(kMillion);

// The data, made when a benchmark asks for them first.
#define SPLINE(name, ...)          \
  Pair& name() {                   \
    static Pair pair(__VA_ARGS__); \
    return pair;                   \
  }
#define SITES(name, ...)                                 \
  const std::vector<double>& name() {                    \
    static const std::vector<double> sites(__VA_ARGS__); \
    return sites;                                        \
  }
SPLINE(natural_1e6, kMillion, 1, false, kNatural, gsl_interp_cspline)
SPLINE(akima_1e6, kMillion, 1, false, kAkima, gsl_interp_akima)
SPLINE(hundred, 1000, 100, true, kNatural, gsl_interp_cspline)
SPLINE(points_100, 100, 1, false, kNatural, gsl_interp_cspline)
SPLINE(points_1e3, 1000, 1, false, kNatural, gsl_interp_cspline)
SPLINE(points_1e4, 10000, 1, false, kNatural, gsl_interp_cspline)
SPLINE(points_1e5, 100000, 1, false, kNatural, gsl_interp_cspline)
SPLINE(uniform_1e3, 1000, 1, true, kNatural, gsl_interp_cspline)
SPLINE(uniform_1e5, 100000, 1, true, kNatural, gsl_interp_cspline)
SITES(random_100, uniform_random(kMillion, 0, 98, 12))
SITES(sorted_1e3, sorted_random(kMillion, 0, 998, 3))
SITES(random_1e3, uniform_random(kMillion, 0, 998, 5))
SITES(random_1e4, uniform_random(kMillion, 0.5, 9998, 4))
SITES(sorted_1e5, sorted_random(kMillion, 0, 99998, 6))
SITES(random_1e5, uniform_random(kMillion, 0, 99998, 7))
SITES(lower, uniform_random(kPairs, 0.5, 9985, 8))
SITES(upper, [] {
  auto sites = lower();
  for (double& b : sites) b += 10;
  return sites;
}())

const ThreadingServices* serial() { return orx_serv_threading_serial(); }
const ThreadingServices* threads() { return orx_serv_threading(); }

void construction() {
  measure("natural 1e6 points", kMillion, [] { natural_1e6().build(serial()); });
  measure("natural 1e6 points gsl", kMillion, [] { natural_1e6().build_gsl(0); });
  measure("akima 1e6 points", kMillion, [] { akima_1e6().build(serial()); });
  measure("akima 1e6 points 2 threads", kMillion, [] { akima_1e6().build(threads()); });
  measure("akima 1e6 points gsl", kMillion, [] { akima_1e6().build_gsl(0); });
  measure("100 functions uniform 1000 points", 1e5, [] { hundred().build(serial()); });
  measure("100 functions uniform 1000 points 2 threads", 1e5, [] { hundred().build(threads()); });
  measure("100 functions uniform 1000 points gsl", 1e5, [] {
    for (size_t f = 0; f < 100; ++f) hundred().build_gsl(f);
  });
}

const Kind* const kKinds[] = {&kLinear,  &kQuadratic, &kSubbotin, &kDefault,
                              &kNatural, &kHermite,   &kBessel,   &kAkima};
std::string build_name(const Kind& kind) { return std::string("build ") + kind.name + " 1e4 points"; }
std::string values_name(const Kind& kind) { return std::string("values of ") + kind.name + " 1e4 points"; }

void kinds() {
  static std::map<const Kind*, Pair> pairs;
  for (const Kind* kind : kKinds) {
    const auto pair = [=]() -> Pair& {
      return pairs.try_emplace(kind, 10000, 1, false, *kind, gsl_interp_linear).first->second;
    };
    measure(build_name(*kind), 1e4, [=] { pair().build(serial()); });
    measure(values_name(*kind), kMillion, [=] { pair().evaluate(random_1e4(), result, 0, serial()); });
  }
}

void evaluation() {
  constexpr int64_t kSorted = ORX_DF_SORTED_SITES;
  measure("values sorted sites 1000 points", kMillion,
          [] { points_1e3().evaluate(sorted_1e3(), result, kSorted, serial()); });
  measure("values sorted sites 1000 points 2 threads", kMillion,
          [] { points_1e3().evaluate(sorted_1e3(), result, kSorted, threads()); });
  measure("values sorted sites 1000 points gsl", kMillion,
          [] { points_1e3().evaluate_gsl(sorted_1e3(), result); });
  measure("values and slopes sorted sites 1000 points", kMillion, [] {
    points_1e3().evaluate(sorted_1e3(), result, kSorted, serial(), {1, 1});
  });
  measure("values random sites 1e4 points", kMillion,
          [] { points_1e4().evaluate(random_1e4(), result, 0, serial()); });
  measure("values random sites 1e4 points 2 threads", kMillion,
          [] { points_1e4().evaluate(random_1e4(), result, 0, threads()); });
  measure("values random sites 1e4 points gsl", kMillion,
          [] { points_1e4().evaluate_gsl(random_1e4(), result); });
  measure("values random sites uniform 1000 points", kMillion,
          [] { uniform_1e3().evaluate(random_1e3(), result, 0, serial()); });
  measure("values random sites uniform 1000 points 2 threads", kMillion,
          [] { uniform_1e3().evaluate(random_1e3(), result, 0, threads()); });
}

// Calls for a few sites each, at random places.
constexpr size_t kShort[] = {1, 2, 4, 6, 16};
struct ShortCalls {
  const char* grid;
  Pair& (*pair)();
  const std::vector<double>& (*sites)();
  bool peer;
  std::string name(size_t n) const { return "values, calls of " + std::to_string(n) + grid; }
  std::string peer_name() const { return name(1) + " gsl"; }
};
const ShortCalls kShortCalls[] = {{" 100 points", points_100, random_100, true},
                                  {" 1e4 points", points_1e4, random_1e4, true},
                                  {" uniform 1000 points", uniform_1e3, random_1e3, false}};

void short_calls() {
  for (const ShortCalls& calls : kShortCalls) {
    for (const size_t n : kShort)
      measure(calls.name(n), kPairs, [=] {
        Pair& pair = calls.pair();
        const std::vector<double>& sites = calls.sites();
        for (size_t i = 0; i + n <= kPairs; i += n)
          orx_df_kernel_dDFInterpolate1D(pair.task, ORX_DF_VALUES, 0, int64_t(n), &sites[i], 0, 0, nullptr,
                                         nullptr, &result[i], 0, nullptr, nullptr, nullptr, nullptr, nullptr,
                                         nullptr, nullptr, nullptr, nullptr, serial());
      });
    if (calls.peer)
      measure(calls.peer_name(), kPairs, [=] {
        Pair& pair = calls.pair();
        const std::vector<double>& sites = calls.sites();
        for (size_t i = 0; i < kPairs; ++i) result[i] = gsl_spline_eval(pair.gsl, sites[i], pair.accel);
      });
  }
}

void search() {
  const auto find = [](Pair& pair, const std::vector<double>& sites, int64_t hint) {
    orx_df_kernel_dDFSearch1D(pair.task, 0, kMillion, sites.data(), hint, nullptr, cells.data(), nullptr,
                              nullptr, serial());
  };
  measure("search uniform 1e5 points", kMillion, [=] { find(uniform_1e5(), random_1e5(), 0); });
  measure("search sorted 1e5 points", kMillion,
          [=] { find(points_1e5(), sorted_1e5(), ORX_DF_SORTED_SITES); });
  measure("search hybrid 1e5 points", kMillion, [=] { find(points_1e5(), random_1e5(), 0); });
  measure("search std::upper_bound 1e5 points", kMillion, [] {
    const auto &x = points_1e5().x, &sites = random_1e5();
    for (size_t i = 0; i < kMillion; ++i)
      cells[i] = int32_t(std::upper_bound(x.begin(), x.end(), sites[i]) - x.begin());
  });
}

void integration() {
  const auto run = [](const ThreadingServices* table) {
    orx_df_kernel_dDFIntegrate1D(points_1e4().task, 0, kPairs, lower().data(), 0, upper().data(), 0, nullptr,
                                 nullptr, result.data(), 0, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, nullptr, nullptr, table);
  };
  measure("integrals over ten cells", kPairs, [=] { run(serial()); });
  measure("integrals over ten cells 2 threads", kPairs, [=] { run(threads()); });
  constexpr size_t few = 200;  // intervals that reach over a third of the grid
  measure("200 integrals over 1e6 points", few, [] {
    static const auto a = uniform_random(few, 0, 1e6, 10), b = uniform_random(few, 0, 1e6, 11);
    orx_df_kernel_dDFIntegrate1D(natural_1e6().task, 0, few, a.data(), 0, b.data(), 0, nullptr, nullptr,
                                 result.data(), 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, nullptr, serial());
  });
  measure("200 integrals over 1e6 points gsl", few, [] {
    static const auto a = uniform_random(few, 1, 999998, 10), b = uniform_random(few, 1, 999998, 11);
    const Pair& spline = natural_1e6();
    for (size_t i = 0; i < few; ++i)
      result[i] = gsl_spline_eval_integ(spline.gsl, std::min(a[i], b[i]), std::max(a[i], b[i]), spline.accel);
  });
  measure("integrals over ten cells gsl", kPairs, [] {
    const Pair& spline = points_1e4();
    for (size_t i = 0; i < kPairs; ++i)
      result[i] = gsl_spline_eval_integ(spline.gsl, lower()[i], upper()[i], spline.accel);
  });
}

// The rows of the table: ours, and the peer with the quotient where there is one; printed, and as Markdown.
std::string rows = "| what | cycles | peer | times as fast |\n|---|---|---|---|\n";
void row(const std::string& name, const std::string& peer = {}) {
  if (!figures.count(name)) return;
  char line[256], beside[64] = "| |";
  const double ours = figures[name];
  if (figures.count(peer))
    std::snprintf(beside, sizeof beside, "%.4g | %.1f |", figures[peer], figures[peer] / ours);
  std::snprintf(line, sizeof line, "| %s | %.4g | %s", name.c_str(), ours, beside);
  rows += line + std::string("\n");
  std::printf("%s\n", line);
}

}  // namespace

int main(int argc, char** argv) {
  construction();
  kinds();
  evaluation();
  short_calls();
  search();
  integration();
  benchmark::Initialize(&argc, argv);
  const char* document = argc == 3 && argv[1] == std::string("--write") ? argv[2] : nullptr;
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\ncycles per point, site or pair\n");
  const char* against_gsl[] = {"natural 1e6 points",
                               "akima 1e6 points",
                               "100 functions uniform 1000 points",
                               "values sorted sites 1000 points",
                               "values random sites 1e4 points",
                               "integrals over ten cells",
                               "200 integrals over 1e6 points"};
  for (const std::string name : against_gsl) row(name, name + " gsl");
  row("values random sites uniform 1000 points");
  row("values and slopes sorted sites 1000 points");
  row("search uniform 1e5 points", "search std::upper_bound 1e5 points");
  row("search sorted 1e5 points", "search std::upper_bound 1e5 points");
  row("search hybrid 1e5 points", "search std::upper_bound 1e5 points");
  for (const ShortCalls& calls : kShortCalls)
    for (const size_t n : kShort) row(calls.name(n), calls.peer_name());
  for (const Kind* kind : kKinds) {
    row(build_name(*kind));
    row(values_name(*kind));
  }
  const char* threaded[] = {"values sorted sites 1000 points",
                            "values random sites 1e4 points",
                            "values random sites uniform 1000 points",
                            "integrals over ten cells",
                            "akima 1e6 points",
                            "100 functions uniform 1000 points"};
  for (const std::string name : threaded) row(name + " 2 threads", name);
  if (document) orx::write_section(document, "fitting", rows);
}
