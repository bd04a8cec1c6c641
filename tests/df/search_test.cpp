// Cell search: every method against a plain count, on all sorts of grids and sites, serial and threaded;
// call-backs, hints, uniform sites.
#include "fixture.h"

namespace {

template <class Real>
class Searches : public ::testing::Test {};
TYPED_TEST_SUITE(Searches, Precisions);

// The number of breakpoints at or below the site.
template <class Real>
int64_t count_cells(const std::vector<Real>& x, Real site) {
  return std::count_if(x.begin(), x.end(), [=](Real point) { return point <= site; });
}

template <class Real>
struct Sites {
  const char* name;
  std::vector<Real> sites;
};

// Random sites with some outside and infinite ones, clusters, repetitions, breakpoints and their neighbours.
template <class Real>
std::vector<Sites<Real>> all_sites(const std::vector<Real>& x, size_t n) {
  const double a = x[0], b = x.back(), beyond = (b - a) / 20;
  auto random = random_values<Real>(int64_t(n), a - beyond, b + beyond, 11);
  const Real infinity = std::numeric_limits<Real>::infinity();
  for (size_t i = 3; i + 2 < n; i += 97) random[i] = infinity, random[i + 1] = -infinity;
  auto clustered = random_values<Real>(int64_t(n), a + (b - a) * 0.31, a + (b - a) * 0.33, 12);
  std::vector<Real> repeated(n), points(n);
  for (size_t i = 0; i < n; ++i) {
    repeated[i] = random[i % 7 * n / 8];
    const Real point = x[i * 2654435761u % x.size()];
    points[i] = i % 3 == 0 ? point : std::nextafter(point, i % 3 == 1 ? infinity : -infinity);
  }
  std::vector<Sites<Real>> all = {
      {"random", random}, {"clustered", clustered}, {"repeated", repeated}, {"breakpoints", points}};
  return all;
}

template <class Real>
std::vector<int32_t> search(const Spline<Real>& s, const std::vector<Real>& sites, int64_t hint,
                            const Real* data_hint, const ThreadingServices* threads) {
  std::vector<int32_t> cells(sites.size() + 1, -77);
  EXPECT_EQ(Api<Real>::search(s.task, 5, int64_t(sites.size()), sites.data(), hint, data_hint, cells.data(),
                              nullptr, nullptr, threads),
            0);
  EXPECT_EQ(cells.back(), -77);
  cells.pop_back();
  return cells;
}

// Grids of several sizes and shapes: jittered, crowded at one end, with repeated points.
template <class Real>
std::vector<std::vector<Real>> all_grids() {
  std::vector<std::vector<Real>> grids;
  for (const int64_t n : {2, 5, 16, 17, 40, 700, 20000}) {
    grids.push_back(make_grid<Real>(n, 0.4));
    auto crowded = grids.back();
    for (Real& point : crowded) point = Real(std::pow(double(point) / double(n), 4));
    grids.push_back(crowded);
    for (size_t i = 1; i + 1 < crowded.size(); i += 5) crowded[i] = crowded[i - 1];
    grids.push_back(crowded);
  }
  return grids;
}

TYPED_TEST(Searches, AllMethodsCountBreakpoints) {
  using Real = TypeParam;
  for (const auto& x : all_grids<Real>())
    for (const size_t n : {1u, 31u, 32u, 33u, 1500u, 6001u}) {
      if (x.size() > 1000 && n > 1500) continue;
      for (auto [name, sites] : all_sites(x, n)) {
        SCOPED_TRACE(::testing::Message() << name << " grid " << x.size() << " sites " << n);
        Spline<Real> s(x, 1, {});
        std::vector<int32_t> expected(n);
        const auto count = [&] {
          for (size_t i = 0; i < n; ++i) expected[i] = int32_t(count_cells(x, sites[i]));
        };
        count();
        for (const int workers : {1, 2, 3}) {
          const auto threads = Threads::table(workers);
          ASSERT_EQ(search(s, sites, 0, (const Real*)nullptr, threads), expected) << "hybrid";
          for (const double likely : {0.0, 1.0, double(x.size()) / 3, double(x.size())}) {
            const Real hint[5] = {9, 1, 9, 9, Real(int(likely))};
            ASSERT_EQ(search(s, sites, 0, hint, threads), expected) << "peak " << likely;
          }
          orx_df_kernel_iEditVal(s.task, ORX_DF_GRID_HINT, 2);
          ASSERT_EQ(search(s, sites, 0, (const Real*)nullptr, threads), expected) << "quasi-uniform";
          orx_df_kernel_iEditVal(s.task, ORX_DF_GRID_HINT, 1);
        }
        std::sort(sites.begin(), sites.end());
        count();
        for (const int workers : {1, 2, 3})
          ASSERT_EQ(search(s, sites, 64, (const Real*)nullptr, Threads::table(workers)), expected)
              << "sorted";
      }
    }
}

// On a uniform grid the breakpoints are nowhere in memory: they are what the formula gives, and the ends.
TYPED_TEST(Searches, UniformGrid) {
  using Real = TypeParam;
  const Real infinity = std::numeric_limits<Real>::infinity();
  std::vector<int64_t> sizes = {2, 700, 5000};
  for (int64_t n = 3; n < 400; ++n) sizes.push_back(n);
  const std::pair<Real, Real> ranges[] = {
      {0, 1}, {Real(-1.7), Real(2.9)}, {1000, 1001}, {Real(-1e-30), Real(2e-30)}, {0, Real(1e30)}};
  for (const auto& [first, last] : ranges)
    for (const int64_t nx : sizes) {
      std::vector<Real> x = even_sites(first, last, nx);
      x.back() = last;
      Spline<Real> s(x, 4, {});
      auto sites = random_values<Real>(50, double(first) - 1, double(last) + 1, 8);
      sites.insert(sites.end(), {infinity, -infinity, std::nextafter(last, -infinity)});
      for (const Real point : x)
        sites.insert(sites.end(), {point, std::nextafter(point, infinity), std::nextafter(point, -infinity)});
      const auto cells = search(s, sites, 0, (const Real*)nullptr, Threads::table(2));
      for (size_t i = 0; i < sites.size(); ++i)
        ASSERT_EQ(cells[i], std::upper_bound(x.begin(), x.end(), sites[i]) - x.begin())
            << nx << " points, site " << sites[i];
    }
}

// Sizes at which not every count is a float, ranges whose width is infinite or has no reciprocal: the ends hold.
TYPED_TEST(Searches, UniformGridsAtTheLimits) {
  using Real = TypeParam;
  const Real infinity = std::numeric_limits<Real>::infinity(), most = std::numeric_limits<Real>::max();
  const Real least = std::numeric_limits<Real>::denorm_min();
  for (const auto& [first, last] :
       std::vector<std::pair<Real, Real>>{{0, 1}, {-most, most}, {0, least}, {-least, 3 * least}})
    for (const int64_t nx : {3, 17000001, INT32_MAX}) {
      const Real ends[] = {first, last};
      DFTask* task;
      ASSERT_EQ(Api<Real>::new_task(&task, nx, ends, 4, 0, nullptr, 0, 0), 0);
      std::vector<Real> sites(40, first);
      sites[3] = -infinity, sites[4] = infinity, sites[5] = last, sites[6] = NAN;
      std::vector<int32_t> cells(40);
      ASSERT_EQ(
          Api<Real>::search(task, 0, 40, sites.data(), 0, nullptr, cells.data(), nullptr, nullptr, nullptr),
          0);
      EXPECT_TRUE(cells[3] == 0 && cells[4] == nx && cells[5] == nx && cells[6] == 0) << nx;
      for (const int32_t cell : cells) ASSERT_TRUE(0 <= cell && cell <= nx);
      EXPECT_EQ(orx_df_kernel_DeleteTask(&task), 0);
    }
}

TYPED_TEST(Searches, WideCellsUniformSitesAndThreads) {
  using Real = TypeParam;
  const auto x = make_grid<Real>(300, 0.3);
  Spline<Real> wide(x, 0, {}, 0, 1), narrow(x, 0, {});
  const Real ends[2] = {Real(-3.5), Real(310)};
  for (const int64_t n : {1, 20, 31, 32, 4096}) {
    std::vector<Real> sites(static_cast<size_t>(n));
    const Real step = n > 1 ? (ends[1] - ends[0]) / Real(n - 1) : 0;
    for (int64_t i = 0; i < n; ++i) sites[size_t(i)] = ends[0] + Real(i) * step;
    std::vector<int64_t> cells(size_t(n), -77);
    orx_serv_fail_allocation(1);
    EXPECT_EQ(Api<Real>::search(wide.task, 0, n, ends, 4, nullptr, cells.data(), nullptr, nullptr,
                                Threads::table(2)),
              0);
    orx_serv_fail_allocation(0);
    EXPECT_EQ(Threads::counts.size(), n > 600);
    const auto expected = search(narrow, sites, 0, (const Real*)nullptr, serial());
    EXPECT_TRUE(std::equal(cells.begin(), cells.end(), expected.begin()));
  }
  std::vector<int64_t> cells(4097);
  const auto many = [&] {
    return Api<Real>::search(wide.task, 0, 4097, ends, 4, nullptr, cells.data(), nullptr, nullptr, serial());
  };
  EXPECT_EQ(fail_each_allocation(ORX_DF_ERROR_MEMORY, many), 1);
  EXPECT_EQ(cells[4095], 300);
  EXPECT_EQ(Api<Real>::search(wide.task, 0, 0, ends, 4, nullptr, nullptr, nullptr, nullptr, serial()), 0);
}

TYPED_TEST(Searches, DataHints) {
  using Real = TypeParam;
  Spline<Real> s(make_grid<Real>(50, 0.3), 0, {});
  const Real site = 3;
  int32_t cell;
  const auto status = [&](Real knowledge, Real likely) {
    const Real hint[5] = {0, knowledge, 0, 0, likely};
    return Api<Real>::search(s.task, 0, 1, &site, 0, hint, &cell, nullptr, nullptr, serial());
  };
  EXPECT_EQ(status(0, 99), 0);
  EXPECT_EQ(status(1, 0), 0);
  EXPECT_EQ(status(1, 50), 0);
  for (const Real bad : {Real(-1), Real(51), Real(NAN)}) EXPECT_EQ(status(1, bad), ORX_DF_ERROR_DATA_HINT);
  for (const Real bad : {Real(0.5), Real(2), Real(NAN)}) EXPECT_EQ(status(bad, 3), ORX_DF_ERROR_DATA_HINT);
}

// A call-back that answers as its script says, and notes the counts it got.
struct Script {
  int32_t status;
  int64_t guess;
  bool final;
  std::vector<int64_t> counts;
};

template <class Real>
int32_t scripted(const int64_t* count, const Real*, int64_t* cells, int32_t* flags, void* params) {
  auto* script = static_cast<Script*>(params);
  script->counts.push_back(*count);
  for (int64_t i = 0; i < *count; ++i) {
    cells[i] = script->guess;
    flags[i] = script->final && i % 2 == 0;
  }
  return script->counts.size() > 1 && script->status < 0 ? script->status : std::max(script->status, 0);
}

TYPED_TEST(Searches, CallBacks) {
  using Real = TypeParam;
  const auto x = make_grid<Real>(60, 0);
  const auto sites = random_values<Real>(300, -3, 63, 4);
  for (const int64_t grid_hint : {0, 4}) {
    Spline<Real> s(x, grid_hint, {});
    for (const int64_t guess : {-5, 0, 1, 30, 60, 1000})
      for (const bool final : {false, true})
        for (const int32_t status : {0, 5, 1000, -9}) {
          Script script{status, guess, final, {}};
          std::vector<int32_t> cells(300, -77);
          EXPECT_EQ(Api<Real>::search(s.task, 0, 300, sites.data(), 0, nullptr, cells.data(), scripted<Real>,
                                      &script, Threads::table(4)),
                    status);
          EXPECT_TRUE(Threads::counts.empty());
          EXPECT_EQ(script.counts,
                    status < 0 ? (std::vector<int64_t>{128, 128}) : (std::vector<int64_t>{128, 128, 44}));
          for (size_t i = 0; i < (status < 0 ? 128 : 300); ++i) {
            const bool as_written = status == 1000 || (final && i % 128 % 2 == 0);
            ASSERT_EQ(cells[i], as_written ? guess : count_cells(x, sites[i])) << i;
          }
        }
  }
}

}  // namespace
