// Interpolation of coefficients that come from nowhere, beside the polynomials evaluated in extended
// precision; steps, look-up, call-backs, statuses.
#if defined(__x86_64__)
#include <sys/mman.h>
#endif

#include <utility>

#include "fixture.h"

namespace {

template <class Real>
class Interpolation : public ::testing::Test {};
TYPED_TEST_SUITE(Interpolation, Precisions);

// The polynomial that serves a site, and its base.
template <class Real>
int64_t polynomial_of(const std::vector<Real>& x, Real site, bool subbotin, const std::vector<Real>& knots) {
  const auto nx = int64_t(x.size());
  const int64_t cell = std::upper_bound(x.begin(), x.end(), site) - x.begin();
  const int64_t p = std::clamp<int64_t>(cell - 1, 0, nx - 2);
  return subbotin && site >= knots[size_t(p + 1)] ? p + 1 : p;
}

// One spline with random coefficients, all the ways to evaluate it.
template <class Real>
void check_polynomials(int64_t order, int64_t kind, int64_t count, int64_t grid_hint) {
  const int64_t nx = 37;
  const auto x = make_grid<Real>(nx, grid_hint == 4 ? 0 : 0.3);
  std::vector<Real> knots = x;  // the middle of the cells, from index 1 on
  for (size_t i = 0; i + 1 < x.size(); ++i) knots[i + 1] = (x[i] + x[i + 1]) / 2;
  Spline<Real> s(x, grid_hint, std::vector<std::vector<Real>>(size_t(count), std::vector<Real>(size_t(nx))));
  s.describe(order, kind);
  s.coeffs = random_values<Real>(int64_t(s.coeffs.size()), -1, 1, 9);
  ASSERT_EQ(Api<Real>::edit_pointer(s.task, ORX_DF_COEFFS, s.coeffs.data()), 0);

  const std::vector<std::vector<int32_t>> all_orders = {{},     {1},    {0, 1},
                                                        {1, 1}, {0, 0}, {1, 0, 1, 1, 0, 1, 1}};
  for (const int64_t n : {1, 31, 33, 64, 385, 512, 1100})
    for (const int64_t site_hint : {0, 4, 64})
      for (const auto& orders : all_orders)
        for (const int64_t layout : {0, 16, 32, 128}) {
          std::vector<Real> sites = even_sites(Real(-1.1), Real(nx + 0.2), n);
          if (site_hint == 0) sites = random_values<Real>(n, -1.1, double(nx) + 0.2, unsigned(n));
          const std::vector<Real> ends = {sites.front(), sites.back()};
          std::vector<Real> result;
          std::vector<int32_t> cells;
          const bool with_cells = layout == 32;
          const auto threads = Threads::table(layout < 32 ? 3 : 1);
          ASSERT_EQ(s.interpolate(site_hint == 4 ? ends : sites, orders, result, layout, site_hint, threads,
                                  n, with_cells ? &cells : nullptr),
                    0);
          const bool threaded = layout < 32 && n > 512;
          ASSERT_EQ(Threads::counts,
                    threaded ? (std::vector<int>{int(n / 320), int(n % 320 / 64)}) : std::vector<int>{});
          std::vector<int64_t> wanted;
          for (size_t k = 0; k < orders.size(); ++k)
            if (orders[k] == 1) wanted.push_back(int64_t(k));
          if (wanted.empty()) wanted = {0};
          const auto d_count = int64_t(wanted.size());
          for (int64_t f = 0; f < count; ++f)
            for (int64_t i = 0; i < n; ++i) {
              const Real site = sites[size_t(i)];
              const int64_t p = polynomial_of(x, site, kind == ORX_DF_SUBBOTIN, knots);
              for (int64_t d = 0; d < d_count; ++d) {
                const int64_t at =
                    layout % 32 == 0 && layout != 128 ? (f * d_count + d) * n + i : (f * n + i) * d_count + d;
                const long double expected =
                    derivative(s.cell(f, p), order, wanted[size_t(d)], (long double)site - x[size_t(p)]);
                ASSERT_NEAR(double(result[size_t(at)]), double(expected), 4000 * kEps<Real>)
                    << "order " << order << " kind " << kind << " grid " << grid_hint << " n " << n
                    << " site " << i << " derivative " << wanted[size_t(d)] << " layout " << layout
                    << " hint " << site_hint;
              }
              if (with_cells) {
                ASSERT_EQ(cells[size_t(i)], std::upper_bound(x.begin(), x.end(), site) - x.begin());
              }
            }
        }
}

TYPED_TEST(Interpolation, Polynomials) {
  using Real = TypeParam;
  struct {
    int64_t order, kind;
  } const splines[] = {{2, 0}, {2, 7}, {3, 0}, {3, 1}, {4, 0}, {4, 5}, {5, 0}, {7, 3}};
  for (const auto& [order, kind] : splines)
    for (const int64_t count : {1, 3})
      for (const int64_t grid_hint : {1, 2, 4}) check_polynomials<Real>(order, kind, count, grid_hint);
}

TYPED_TEST(Interpolation, StepsAndLookUp) {
  using Real = TypeParam;
  const auto x = even_sites(Real(0), Real(49), 50);
  const std::vector<std::vector<Real>> y = {random_values<Real>(50, 0, 1, 1),
                                            random_values<Real>(50, 0, 1, 2)};
  const Real infinity = std::numeric_limits<Real>::infinity();
  for (const int64_t grid_hint : {0, 4})
    for (const int64_t func_hint : {16, 32}) {
      Spline<Real> s(x, grid_hint, y, func_hint);
      std::vector<Real> sites = {-1, 50}, result;
      for (const Real point : x)
        sites.insert(sites.end(), {point, std::nextafter(point, infinity), std::nextafter(point, -infinity)});
      const auto n = sites.size();
      s.describe(0, ORX_DF_STEP_RIGHT_CONTINUOUS);
      ASSERT_EQ(s.interpolate(sites, {1, 1}, result), 0);
      const auto right = result;
      s.describe(0, ORX_DF_STEP_LEFT_CONTINUOUS);
      ASSERT_EQ(s.interpolate(sites, {1}, result), 0);
      for (size_t f = 0; f < 2; ++f)
        for (size_t i = 0; i < n; ++i) {
          const auto at_or_below = size_t(std::upper_bound(x.begin(), x.end(), sites[i]) - x.begin());
          const auto below = size_t(std::lower_bound(x.begin(), x.end(), sites[i]) - x.begin());
          ASSERT_EQ(right[2 * f * n + i], y[f][at_or_below == 0 ? 0 : at_or_below - 1]) << sites[i];
          ASSERT_EQ(right[(2 * f + 1) * n + i], 0);
          ASSERT_EQ(result[f * n + i], y[f][std::min<size_t>(below, 49)]) << sites[i];
        }
      // A look-up finds its points; anything else is an error.
      ASSERT_EQ(Api<Real>::edit_spline(s.task, 0, ORX_DF_LOOK_UP, 0, nullptr, 0, nullptr, nullptr, 0), 0);
      ASSERT_EQ(s.interpolate(x, {}, result), 0);
      for (size_t f = 0; f < 2; ++f)
        EXPECT_TRUE(std::equal(y[f].begin(), y[f].end(), result.begin() + int(50 * f)));
      for (const Real bad : {Real(-1), Real(3.5), Real(49.5), Real(NAN)})
        EXPECT_EQ(s.interpolate({bad}, {}, result), ORX_DF_ERROR_LOOKUP_SITE);
      EXPECT_EQ(s.interpolate(x, {1, 1}, result), ORX_DF_ERROR_LOOKUP_DERIVATIVE);
      for (const Real near : {Real(7 - 5e-13), Real(7 + 5e-13)}) {
        EXPECT_EQ(s.interpolate({near}, {}, result),
                  grid_hint == 4 || near == 7 ? 0 : ORX_DF_ERROR_LOOKUP_SITE);
      }
    }
  Spline<Real> none(x, 0, {});
  std::vector<Real> result;
  Api<Real>::edit_spline(none.task, 0, ORX_DF_LOOK_UP, 0, nullptr, 0, nullptr, nullptr, 0);
  EXPECT_EQ(none.interpolate(x, {}, result), ORX_DF_ERROR_LOOKUP_VALUES);
  Api<Real>::edit_spline(none.task, 0, ORX_DF_STEP_LEFT_CONTINUOUS, 0, nullptr, 0, nullptr, nullptr, 0);
  EXPECT_EQ(none.interpolate(x, {}, result), ORX_DF_ERROR_FUNCS);
}

// A call-back that checks the cells that it gets and marks its results: base + 1000 d + cell.
struct Mark {
  int32_t base;
  int64_t wanted;
  bool by_site;
  int64_t low, high;  // the cells to come
  int32_t status = 0;
  int64_t calls = 0, sites = 0;
};

template <class Real>
int32_t mark(const int64_t* count, const int64_t* cells, const Real*, Real* result, void* params) {
  auto* m = static_cast<Mark*>(params);
  ++m->calls;
  m->sites += *count;
  for (int64_t i = 0; i < *count; ++i) {
    EXPECT_TRUE(m->low <= cells[i] && cells[i] <= m->high);
    for (int64_t d = 0; d < m->wanted; ++d)
      result[m->by_site ? i * m->wanted + d : d * *count + i] = Real(m->base + 1000 * d + cells[i]);
  }
  return m->status;
}

TYPED_TEST(Interpolation, CallBacks) {
  using Real = TypeParam;
  const auto x = make_grid<Real>(20, 0.3);
  const std::vector<std::vector<Real>> y(2, random_values<Real>(20, -1, 1, 4));
  for (const int64_t n : {1, 40, 1000})
    for (const int64_t layout : {0, 16})
      for (const int given : {1, 2, 4, 5, 7})  // left, inside, right
        for (const size_t extra : {0u, 20u}) {
          Spline<Real> s(x, 0, y);
          s.describe(4, ORX_DF_NATURAL, ORX_DF_FREE_END);
          ASSERT_EQ(Api<Real>::natural(s.task, 0, 0, serial()), 0);
          auto sites = random_values<Real>(n, -5, 25, 6);
          sites[0] = x.back();  // belongs to the right
          std::vector<int32_t> orders(2 + extra, 1);
          std::vector<Real> plain, result;
          ASSERT_EQ(s.interpolate(sites, orders, plain, layout), 0);
          result = plain;
          const auto wanted = int64_t(orders.size());
          Mark left{100000, wanted, layout == 16, 0, 0}, inside{200000, wanted, layout == 16, 1, 19},
              right{300000, wanted, layout == 16, 20, 20};
          const auto run = [&] {
            return Api<Real>::interpolate(
                s.task, 1, 0, n, sites.data(), 0, wanted, orders.data(), nullptr, result.data(), layout,
                given & 1 ? mark<Real> : nullptr, &left, given & 4 ? mark<Real> : nullptr, &right,
                given & 2 ? mark<Real> : nullptr, &inside, nullptr, nullptr, nullptr, Threads::table(2));
          };
          const long before = orx_serv_live_blocks();
          ASSERT_EQ(run(), 0);
          for (int64_t f = 0; f < 2; ++f)
            for (int64_t i = 0; i < n; ++i)
              for (int64_t d = 0; d < wanted; ++d) {
                const auto at = size_t(layout == 16 ? (f * n + i) * wanted + d : (f * wanted + d) * n + i);
                const int64_t cell = std::upper_bound(x.begin(), x.end(), sites[size_t(i)]) - x.begin();
                const Mark& m = cell == 0 ? left : cell == 20 ? right : inside;
                const bool called = given & (cell == 0 ? 1 : cell == 20 ? 4 : 2);
                ASSERT_EQ(result[at], called ? Real(m.base + 1000 * d + cell) : plain[at]) << i << ' ' << d;
              }
          EXPECT_EQ((left.sites + inside.sites + right.sites) % 2, 0);  // both functions
          left.status = right.status = inside.status = -7;
          if (given & 4) {  // site 0 lies to the right
            EXPECT_EQ(run(), -7);
          }
          EXPECT_EQ(orx_serv_live_blocks(), before);
        }
}

// A single site and a single function take the short path, which reports what its call-back says.
TYPED_TEST(Interpolation, OneSite) {
  using Real = TypeParam;
  for (const int64_t nx : {5, 100})
    for (const int64_t grid_hint : {0, 1, 2, 4})
      for (const int64_t order : {2, 3, 4}) {
        const auto x = make_grid<Real>(nx, grid_hint == 4 ? 0 : 0.3);
        Spline<Real> s(x, grid_hint, {random_values<Real>(nx, -1, 1, 4)});
        s.describe(order, 0);
        s.coeffs = random_values<Real>(int64_t(s.coeffs.size()), -1, 1, 9);
        Api<Real>::edit_pointer(s.task, ORX_DF_COEFFS, s.coeffs.data());
        for (const Real site : {Real(-0.5), x[0], x[1], Real(2.2), Real(3.7), x[4], Real(nx + 1)}) {
          std::vector<Real> one, two;
          orx_serv_fail_allocation(1);
          ASSERT_EQ(s.interpolate({site}, {1, 0, 1, 1}, one, 77), 0);
          orx_serv_fail_allocation(0);
          ASSERT_EQ(s.interpolate({site, site}, {1, 0, 1, 1}, two, 16), 0);
          for (size_t d = 0; d < 3; ++d) EXPECT_NEAR(one[d], two[d], 100 * kEps<Real>) << site;
          Mark m{100, 3, false, 0, nx, 5};
          const int32_t orders[] = {1, 0, 1, 1};
          EXPECT_EQ(
              Api<Real>::interpolate(s.task, 1, 0, 1, &site, 0, 4, orders, nullptr, one.data(), 0, mark<Real>,
                                     &m, mark<Real>, &m, mark<Real>, &m, nullptr, nullptr, nullptr, nullptr),
              5);
          EXPECT_EQ(one[1], Real(1100 + (std::upper_bound(x.begin(), x.end(), site) - x.begin())));
        }
      }
}

// A few sites come by another road than many: the same results, on every partition and in every layout.
TYPED_TEST(Interpolation, FewSites) {
  using Real = TypeParam;
  constexpr size_t count = 200;
  for (const int64_t nx : {2, 16, 17, 23, 24, 25, 1000, 30000})
    for (const int64_t grid_hint : {0, 1, 2, 4})
      for (const int64_t order : {2, 3, 4}) {
        auto x = make_grid<Real>(nx, grid_hint == 4 ? 0 : 0.3);
        if (grid_hint == 1)  // ever closer to the left, where bins of the table hold up to hundreds
          for (Real& point : x) point *= point / Real(nx);
        Spline<Real> s(x, grid_hint, {std::vector<Real>(size_t(nx))});
        s.describe(order, 0);
        s.coeffs = random_values<Real>(int64_t(s.coeffs.size()), -1, 1, 9);
        Api<Real>::edit_pointer(s.task, ORX_DF_COEFFS, s.coeffs.data());
        auto sites = random_values<Real>(count, -1, double(nx), 6);
        for (size_t i = 0; i < 100; ++i) sites[i] = x[i * 7919 % x.size()];
        sites[100] = x[0], sites[101] = x.back();
        const std::vector<std::vector<int32_t>> all_orders = {{1, 1, 1, 1}, {0, 0, 1}, {0, 0, 0, 1}};
        for (const auto& orders : all_orders)
          for (const int64_t layout : {0, 16}) {
            std::vector<Real> many, few;
            const auto wanted = size_t(std::count(orders.begin(), orders.end(), 1));
            ASSERT_EQ(s.interpolate(sites, orders, many, layout), 0);
            for (const size_t n : {1u, 2u, 5u, 8u, 9u}) {
              for (size_t first = 0; first + n <= count; first += n) {
                const std::vector<Real> some(sites.begin() + int(first), sites.begin() + int(first + n));
                ASSERT_EQ(s.interpolate(some, orders, few, layout, 0, nullptr), 0);
                for (size_t i = 0; i < n; ++i)
                  for (size_t d = 0; d < wanted; ++d)
                    ASSERT_EQ(few[layout ? i * wanted + d : d * n + i],
                              many[layout ? (first + i) * wanted + d : d * count + first + i])
                        << nx << " points, hint " << grid_hint << ", site " << some[i] << ", derivative " << d
                        << " of " << orders.size();
              }
            }
          }
      }
}

// What a short call need not ask is asked by the editors, after every edit.
TYPED_TEST(Interpolation, FewSitesAfterEdits) {
  using Real = TypeParam;
  auto x = make_grid<Real>(200, 0.3);
  Spline<Real> s(x, 0, {std::vector<Real>(200)});
  s.describe(4, 0);
  s.coeffs = random_values<Real>(int64_t(s.coeffs.size()), -1, 1, 9);
  const auto sites = random_values<Real>(40, -1, 200, 6);
  const auto same_as_many = [&] {
    std::vector<Real> many, few;
    ASSERT_EQ(s.interpolate(sites, {}, many), 0);
    ASSERT_EQ(s.interpolate({sites.begin(), sites.begin() + 3}, {}, few), 0);
    EXPECT_TRUE(std::equal(few.begin(), few.end(), many.begin()));
  };
  const auto status = [&] {
    std::vector<Real> few;
    return s.interpolate({sites.begin(), sites.begin() + 3}, {}, few);
  };
  Api<Real>::edit_pointer(s.task, ORX_DF_COEFFS, s.coeffs.data());
  same_as_many();
  const auto shifted = random_values<Real>(int64_t(s.coeffs.size()), -1, 1, 10);
  Api<Real>::edit_indexed(s.task, ORX_DF_COEFFS, 0, shifted.data());
  same_as_many();
  orx_df_kernel_iEditVal(s.task, ORX_DF_SPLINE_ORDER, 2);
  same_as_many();
  orx_df_kernel_iEditVal(s.task, ORX_DF_GRID_HINT, ORX_DF_QUASI_UNIFORM_PARTITION);
  same_as_many();
  orx_df_kernel_iEditVal(s.task, ORX_DF_GRID_HINT, ORX_DF_NO_HINT);
  orx_df_kernel_iEditVal(s.task, ORX_DF_GRID_SIZE, 100);
  same_as_many();
  orx_df_kernel_iEditVal(s.task, ORX_DF_GRID_SIZE, 200);
  s.describe(1, 0);
  EXPECT_EQ(status(), ORX_DF_ERROR_SPLINE_KIND);
  s.describe(4, 0);
  same_as_many();
  orx_df_kernel_iEditVal(s.task, ORX_DF_CHECK_FLAG, 1);
  s.x[7] = s.x[6];
  EXPECT_EQ(ORX_DF_BAD_BREAKPOINT(status()), 7);
  orx_df_kernel_iEditVal(s.task, ORX_DF_CHECK_FLAG, 0);
  orx_df_kernel_iEditVal(s.task, ORX_DF_FUNC_COUNT, 2);
  EXPECT_EQ(status(), ORX_DF_ERROR_COEFFS);
}

// The ends of a uniform partition lie in the caller's array, and count as they stand there.
TYPED_TEST(Interpolation, FewSitesAfterEndsHaveMoved) {
  using Real = TypeParam;
  Spline<Real> s(make_grid<Real>(50, 0), ORX_DF_UNIFORM_PARTITION, {std::vector<Real>(50)});
  s.describe(4, 0);
  s.coeffs = random_values<Real>(int64_t(s.coeffs.size()), -1, 1, 9);
  Api<Real>::edit_pointer(s.task, ORX_DF_COEFFS, s.coeffs.data());
  const auto sites = random_values<Real>(40, -1, 60, 6);
  for (const auto& [end, value] : {std::pair(0, Real(-3)), {1, Real(57)}}) {
    const Real before = std::exchange(s.x[size_t(end)], value);
    std::vector<Real> many, few;
    ASSERT_EQ(s.interpolate(sites, {}, many), 0);
    for (const int n : {1, 3}) {
      ASSERT_EQ(s.interpolate({sites.begin(), sites.begin() + n}, {}, few), 0);
      EXPECT_TRUE(std::equal(few.begin(), few.end(), many.begin())) << n;
    }
    s.x[size_t(end)] = before;
  }
}

// Ranges whose width overflows, or whose reciprocal does.
TYPED_TEST(Interpolation, OneSiteInAnExtremeRange) {
  using Real = TypeParam;
  for (const Real unit : {std::numeric_limits<Real>::max() / 10, std::numeric_limits<Real>::denorm_min()})
    for (const int64_t grid_hint : {0, 2}) {
      std::vector<Real> x(20), y(20, Real(3)), one;
      for (size_t i = 0; i < 20; ++i) x[i] = unit * (Real(i) - 10);
      Spline<Real> s(x, grid_hint, {y});
      s.describe(2, 0);
      for (size_t i = 0; i < s.coeffs.size(); i += 2) s.coeffs[i] = Real(i / 2);
      for (size_t i = 0; i < 19; ++i) {
        ASSERT_EQ(s.interpolate({x[i]}, {}, one, 0, 0, nullptr), 0);
        EXPECT_EQ(one[0], Real(i));
      }
    }
}

#if defined(__x86_64__)
// Coefficients beyond 2^31 elements: memory that is never touched but at its end.
TYPED_TEST(Interpolation, MoreCoefficientsThan32BitsCount) {
  using Real = TypeParam;
  const struct { int64_t nx, order; } cases[] = {{600000000, 4}, {100000, 30000}};
  for (const auto& [nx, order] : cases) {
    const size_t bytes = size_t(nx - 1) * size_t(order) * sizeof(Real);
    void* const memory =
        mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) GTEST_SKIP() << "no address space";
    auto* const coeffs = static_cast<Real*>(memory);
    Real* const last = coeffs + (nx - 2) * order;
    last[0] = 3, last[1] = Real(0.5);
    const Real ends[] = {0, Real(nx - 1)}, y = 0;
    DFTask* task;
    ASSERT_EQ(Api<Real>::new_task(&task, nx, ends, 4, 1, &y, ORX_DF_FIRST_ONLY, 0), 0);
    ASSERT_EQ(Api<Real>::edit_spline(task, order, 0, 0, nullptr, 0, nullptr, coeffs, 0), 0);
    const std::vector<Real> sites(40, Real(nx)), up(40, Real(nx + 2));  // one cell beyond the end, and more
    std::vector<Real> result(40);
    for (const int64_t n : {1, 40}) {
      ASSERT_EQ(Api<Real>::interpolate(task, 1, 0, n, sites.data(), 0, 0, nullptr, nullptr, result.data(), 0,
                                       nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                       nullptr, nullptr),
                0);
      EXPECT_NEAR(double(result[size_t(n - 1)]), 3 + 0.5 * (double(sites[0]) - double(nx - 2)), 40);
      EXPECT_GE(result[size_t(n - 1)], Real(3));
    }
    EXPECT_EQ(orx_df_kernel_DeleteTask(&task), 0);
    munmap(memory, bytes);
  }
}
#endif

// A search of the caller's own that fails, or answers rightly.
template <class Real>
int32_t own_search(const int64_t* count, const Real* sites, int64_t* cells, int32_t*, void* params) {
  for (int64_t i = 0; i < *count; ++i) cells[i] = int64_t(sites[i]);
  return *static_cast<int32_t*>(params);
}

TYPED_TEST(Interpolation, StatusesSearchCallBacksAndWideIntegers) {
  using Real = TypeParam;
  const auto x = make_grid<Real>(30, 0.3);
  Spline<Real> s(x, 0, {random_values<Real>(30, -1, 1, 4)}, 16, 1);
  const auto sites = random_values<Real>(700, 0, 29, 1);
  std::vector<Real> result(1400), expected(1400);
  std::vector<int64_t> cells(700, -77);
  int32_t answer = 0;
  const auto run = [&](typename Api<Real>::SearchCb search, int64_t hint, const Real* data, int64_t type,
                       Real* out) {
    const int64_t orders[] = {0, 1};
    return Api<Real>::interpolate(s.task, type, 0, 700, sites.data(), 0, 2, orders, data, out, hint, nullptr,
                                  nullptr, nullptr, nullptr, nullptr, nullptr, search, &answer, cells.data(),
                                  Threads::table(2));
  };
  struct {
    int64_t order, kind;
  } const bad[] = {{0, 0}, {0, 9}, {1, 0}, {3, 2}, {4, 1}, {4, 6}};
  for (const auto& [order, kind] : bad) {
    s.describe(order, kind);
    EXPECT_EQ(run(nullptr, 0, nullptr, 1, result.data()), ORX_DF_ERROR_SPLINE_KIND) << order << ' ' << kind;
  }
  ASSERT_EQ(Api<Real>::edit_spline(s.task, 4, 0, 0, nullptr, 0, nullptr, nullptr, 0), 0);
  s.describe(4, 2, 2);
  ASSERT_EQ(Api<Real>::natural(s.task, 0, 0, serial()), 0);
  const Real data[5] = {0, 3, 0, 0, 0};
  EXPECT_EQ(run(nullptr, 0, data, 1, result.data()), ORX_DF_ERROR_DATA_HINT);
  EXPECT_EQ(run(nullptr, 64, nullptr, 1, result.data()), ORX_DF_ERROR_INTERPOLATION);
  EXPECT_EQ(run(nullptr, 0, nullptr, 3, expected.data()), 0);
  for (size_t i = 0; i < 700; ++i)
    ASSERT_EQ(cells[i], std::upper_bound(x.begin(), x.end(), sites[i]) - x.begin());
  EXPECT_EQ(run(own_search<Real>, 0, nullptr, 1, result.data()), 0);
  EXPECT_EQ(result, expected);
  std::fill(cells.begin(), cells.end(), -77);
  EXPECT_EQ(run(nullptr, 0, nullptr, ORX_DF_CELLS, nullptr), 0);  // cells alone: no result is written
  EXPECT_GE(*std::min_element(cells.begin(), cells.end()), 1);
  answer = -3;
  EXPECT_EQ(run(own_search<Real>, 0, nullptr, 1, result.data()), -3);
  Spline<Real> bare(x, 0, {});
  bare.order = 4;
  orx_df_kernel_iEditVal(bare.task, ORX_DF_SPLINE_ORDER, 4);
  EXPECT_EQ(bare.interpolate(sites, {}, result), ORX_DF_ERROR_COEFFS);
}

TYPED_TEST(Interpolation, EachAllocationFailing) {
  using Real = TypeParam;
  Spline<Real> s(make_grid<Real>(30, 0.3), 0, {random_values<Real>(30, -1, 1, 4)});
  s.describe(4, 2, 2);
  ASSERT_EQ(Api<Real>::natural(s.task, 0, 0, serial()), 0);
  const auto sites = random_values<Real>(100, -5, 35, 1);
  const std::vector<int32_t> orders(40, 1);  // a buffer of its own, and one for the call-back
  std::vector<Real> result(4000);
  Mark m{0, 40, false, 0, 30};
  EXPECT_EQ(fail_each_allocation(ORX_DF_ERROR_MEMORY,
                                 [&] {
                                   return Api<Real>::interpolate(s.task, 1, 0, 100, sites.data(), 0, 40,
                                                                 orders.data(), nullptr, result.data(), 0,
                                                                 mark<Real>, &m, nullptr, nullptr, mark<Real>,
                                                                 &m, nullptr, nullptr, nullptr, serial());
                                 }),
            4);
}

}  // namespace
