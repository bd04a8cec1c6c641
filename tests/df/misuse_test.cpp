// What callers get wrong: null pointers, a task of the other precision, a spline of another order, counts that
// were raised behind the arrays' backs, breakpoints that do not ascend. Each gets a status, and nothing is
// written.
#include <functional>

#include "_service/task.hpp"
#include "fixture.h"

namespace {

template <class Real>
class Misuse : public ::testing::Test {};
TYPED_TEST_SUITE(Misuse, Precisions);

// Everything that reads a task, by name; results go to `out`, which nobody may touch on failure.
template <class Real>
struct Call {
  const char* name;
  int64_t order, kind;
  std::function<int32_t(DFTask*)> run;
};

template <class Real>
std::vector<Call<Real>> builders() {
  using A = Api<Real>;
  return {{"linear", 2, 0, [](DFTask* t) { return A::linear(t, 0, 0, 0, nullptr); }},
          {"quadratic", 3, 0, [](DFTask* t) { return A::quadratic(t, 0, 0, 0, nullptr); }},
          {"subbotin", 3, 1, [](DFTask* t) { return A::quadratic(t, 0, 0, 0, nullptr); }},
          {"natural", 4, 2, [](DFTask* t) { return A::natural(t, 0, 0, nullptr); }},
          {"default", 4, 0, [](DFTask* t) { return A::standard(t, 0, 0, nullptr); }},
          {"hermite", 4, 3, [](DFTask* t) { return A::hermite(t, 0, 0, nullptr); }},
          {"bessel", 4, 4, [](DFTask* t) { return A::bessel(t, 0, 0, nullptr); }},
          {"akima", 4, 5, [](DFTask* t) { return A::akima(t, 0, 0, nullptr); }}};
}

template <class Real>
struct Readers {
  std::vector<Real> sites = {Real(1.5), Real(2.5), Real(4.5)}, ends = {5, 5, 5}, out;
  std::vector<int32_t> cells = std::vector<int32_t>(3, -77);
  explicit Readers(int64_t functions = 1) : out(size_t(3 * functions), Real(-77)) {}

  int32_t search(DFTask* t) {
    return Api<Real>::search(t, 0, 3, sites.data(), 0, nullptr, cells.data(), nullptr, nullptr, nullptr);
  }
  int32_t interpolate(DFTask* t, int64_t n = 3) {
    return Api<Real>::interpolate(t, 1, 0, n, sites.data(), 0, 0, nullptr, nullptr, out.data(), 0, nullptr,
                                  nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                  nullptr);
  }
  int32_t integrate(DFTask* t) {
    return Api<Real>::integrate(t, 0, 3, sites.data(), 0, ends.data(), 0, nullptr, nullptr, out.data(), 0,
                                nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                nullptr);
  }
  bool untouched() const {
    return std::count(out.begin(), out.end(), Real(-77)) == int(out.size()) && cells[0] == -77;
  }
};

// A task with one function, and conditions that suit every kind.
template <class Real>
struct Ready : Spline<Real> {
  explicit Ready(int64_t order, int64_t kind, int64_t functions = 1)
      : Spline<Real>(make_grid<Real>(8, 0.3), 0,
                     std::vector<std::vector<Real>>(size_t(functions), random_values<Real>(8, -1, 1, 3))) {
    const bool quadratic = order == 3 && kind == 0;
    std::vector<Real> inner;
    if (kind == ORX_DF_HERMITE || kind == ORX_DF_DEFAULT) inner.assign(6, 0);
    this->describe(order, kind, quadratic ? 128 : order == 2 ? 0 : 12, {0, 0}, inner.empty() ? 0 : 1, inner);
    if (kind == ORX_DF_SUBBOTIN) orx_df_kernel_iEditVal(this->task, ORX_DF_INT_COND_KIND, ORX_DF_KNOTS);
  }
};

TYPED_TEST(Misuse, NullTaskAndTaskOfTheOtherPrecision) {
  using Real = TypeParam;
  using Other = std::conditional_t<sizeof(Real) == 8, float, double>;
  using A = Api<Real>;
  Readers<Real> readers;
  Real data[64] = {};
  for (const auto& call : builders<Real>()) {
    Ready<Other> other(call.order, call.kind);
    const auto before = other.coeffs;
    for (DFTask* task : {static_cast<DFTask*>(nullptr), other.task}) {
      EXPECT_EQ(call.run(task), ORX_DF_ERROR_TASK) << call.name;
      EXPECT_EQ(readers.search(task), ORX_DF_ERROR_TASK);
      EXPECT_EQ(readers.interpolate(task), ORX_DF_ERROR_TASK);
      EXPECT_EQ(readers.interpolate(task, 1), ORX_DF_ERROR_TASK);
      EXPECT_EQ(readers.integrate(task), ORX_DF_ERROR_TASK);
      EXPECT_EQ(A::edit_spline(task, 4, 2, 2, nullptr, 0, nullptr, data, 0), ORX_DF_ERROR_TASK);
      EXPECT_EQ(A::edit_pointer(task, ORX_DF_GRID, data), ORX_DF_ERROR_TASK);
      EXPECT_EQ(A::edit_indexed(task, ORX_DF_FUNCS, 0, data), ORX_DF_ERROR_TASK);
    }
    EXPECT_EQ(other.coeffs, before);
  }
  EXPECT_TRUE(readers.untouched());
  EXPECT_EQ(A::new_task(nullptr, 3, data, 0, 0, nullptr, 0, 0), ORX_DF_ERROR_TASK);
}

TYPED_TEST(Misuse, BuildersWithoutWhatTheyNeed) {
  using Real = TypeParam;
  using A = Api<Real>;
  for (const auto& call : builders<Real>()) {
    SCOPED_TRACE(call.name);
    const auto edit = [](DFTask* task, int64_t id, int64_t value) {
      ASSERT_EQ(orx_df_kernel_iEditVal(task, id, value), 0);
    };
    Ready<Real> ready(call.order, call.kind);
    ASSERT_EQ(call.run(ready.task), 0);  // without a table of threads, too
    const auto before = ready.coeffs;
    // A spline of another order: its coefficients would not fit.
    edit(ready.task, ORX_DF_SPLINE_ORDER, call.order == 4 ? 2 : 4);
    EXPECT_EQ(call.run(ready.task), ORX_DF_ERROR_METHOD);
    edit(ready.task, ORX_DF_SPLINE_ORDER, call.order);
    // More functions than there are pointers.
    edit(ready.task, ORX_DF_FUNC_COUNT, 1000000);
    EXPECT_EQ(call.run(ready.task), ORX_DF_ERROR_FUNCS);
    edit(ready.task, ORX_DF_FUNC_COUNT, 1);
    EXPECT_EQ(ready.coeffs, before);
    // A second function that was never given, neither its values nor its coefficients.
    Ready<Real> two(call.order, call.kind, 2);
    auto* t = orx::df::Task<Real>::of(two.task);
    const Real* values = t->funcs[1];
    t->funcs[1] = nullptr;
    EXPECT_EQ(call.run(two.task), ORX_DF_ERROR_FUNCS);
    t->funcs[1] = values;
    t->coeffs[1] = nullptr;
    EXPECT_EQ(call.run(two.task), ORX_DF_ERROR_COEFFS);
    EXPECT_EQ(std::count(two.coeffs.begin(), two.coeffs.end(), Real(0)), int(two.coeffs.size()));
    // A task that was told nothing of a spline, or no coefficients.
    Spline<Real> bare(ready.x, 0, {ready.values});
    EXPECT_LT(call.run(bare.task), 0);
    EXPECT_EQ(A::edit_spline(bare.task, call.order, call.kind,
                             call.order == 2                     ? 0
                             : call.order == 3 && call.kind == 0 ? 128
                                                                 : 12,
                             ready.bnds.data(), ready.ints.empty() ? 0 : 1,
                             ready.ints.empty() ? nullptr : ready.ints.data(), nullptr, 0),
              0);
    if (call.kind == ORX_DF_SUBBOTIN) edit(bare.task, ORX_DF_INT_COND_KIND, ORX_DF_KNOTS);
    EXPECT_EQ(call.run(bare.task), ORX_DF_ERROR_COEFFS);
  }
  // Inner conditions, and the value of a periodic end.
  for (const auto build : {Api<Real>::standard, Api<Real>::hermite}) {
    Spline<Real> s({0, 1, 2, 3, 4}, 0, {{1, 2, 3, 4, 1}});
    s.describe(4, ORX_DF_NATURAL, 12, {0, 0});
    EXPECT_EQ(build(s.task, 0, 0, nullptr), ORX_DF_ERROR_INT_CONDS);
    s.describe(4, ORX_DF_NATURAL, ORX_DF_PERIODIC, {}, 1, {0, 0, 0});
    EXPECT_EQ(build(s.task, 0, 0, nullptr), ORX_DF_ERROR_BND_CONDS);
  }
}

TYPED_TEST(Misuse, ReadersWithoutValues) {
  using Real = TypeParam;
  for (const int64_t kind : {ORX_DF_STEP_LEFT_CONTINUOUS, ORX_DF_STEP_RIGHT_CONTINUOUS, ORX_DF_LOOK_UP}) {
    Spline<Real> s({0, 1, 2, 3, 4}, 0, {{1, 2, 3, 4, 1}, {1, 2, 3, 4, 1}}, ORX_DF_FIRST_ONLY);
    s.describe(0, kind);
    Readers<Real> readers(2);
    const int32_t integral = kind == ORX_DF_LOOK_UP ? ORX_DF_ERROR_SPLINE_KIND : ORX_DF_ERROR_FUNCS;
    EXPECT_EQ(readers.interpolate(s.task), ORX_DF_ERROR_FUNCS);
    EXPECT_EQ(readers.integrate(s.task), integral);
    ASSERT_EQ(Api<Real>::edit_indexed(s.task, ORX_DF_FUNCS, 1, s.values.data()), 0);
    ASSERT_EQ(orx_df_kernel_iEditVal(s.task, ORX_DF_FUNC_COUNT, 1000000), 0);
    EXPECT_EQ(readers.interpolate(s.task), ORX_DF_ERROR_FUNCS);
    EXPECT_EQ(readers.integrate(s.task), integral);
    EXPECT_TRUE(readers.untouched());
  }
}

// Editors raise counts without a look at the arrays made from them; who reads or sets does look.
TYPED_TEST(Misuse, CountsRaised) {
  using Real = TypeParam;
  using A = Api<Real>;
  for (const int64_t hint : {ORX_DF_ROWS, ORX_DF_COLUMNS}) {
    Spline<Real> s({0, 1, 2, 3, 4, 5}, 0, {{0, 1, 0, 1, 0, 1}}, hint);
    s.describe(2, 0);
    ASSERT_EQ(A::linear(s.task, 0, 0, 0, nullptr), 0);
    ASSERT_EQ(orx_df_kernel_iEditVal(s.task, ORX_DF_FUNC_COUNT, 300), 0);
    Readers<Real> readers(300);
    EXPECT_EQ(readers.interpolate(s.task), ORX_DF_ERROR_COEFFS);
    // A pointer beyond the old count finds room, and the others stay; values in columns have the only one.
    const auto set_last = [&](int64_t id, Real* to) { return A::edit_indexed(s.task, id, 299, to); };
    orx_serv_fail_allocation(1);
    EXPECT_EQ(set_last(ORX_DF_COEFFS, s.coeffs.data()), ORX_DF_ERROR_MEMORY);
    orx_serv_fail_allocation(0);
    EXPECT_EQ(set_last(ORX_DF_COEFFS, s.coeffs.data()), 0);
    EXPECT_EQ(set_last(ORX_DF_FUNCS, s.values.data()), 0);
    const auto* t = orx::df::Task<Real>::of(s.task);
    EXPECT_TRUE(t->coeffs[0] == s.coeffs.data() && t->coeffs[1] == nullptr &&
                t->coeffs[299] == s.coeffs.data());
    EXPECT_TRUE(t->funcs[0] == s.values.data() && t->funcs[299] == s.values.data());
    EXPECT_EQ(readers.interpolate(s.task), ORX_DF_ERROR_COEFFS);
    EXPECT_TRUE(readers.untouched());
    for (int64_t f = 1; f < 299; ++f)
      ASSERT_EQ(A::edit_indexed(s.task, ORX_DF_COEFFS, f, s.coeffs.data()), 0);
    EXPECT_EQ(readers.interpolate(s.task), 0);
    EXPECT_EQ(readers.out[899], readers.out[2]);
  }
}

TYPED_TEST(Misuse, GridSizeEdited) {
  using Real = TypeParam;
  const auto x = make_grid<Real>(20000, 0.3);
  Spline<Real> s({x.begin(), x.begin() + 300}, 0, {});
  ASSERT_EQ(Api<Real>::edit_pointer(s.task, ORX_DF_GRID, x.data()), 0);
  for (const int64_t size : {20000, 20, 301, 17, 2}) {  // the table is still that of 300 breakpoints
    ASSERT_EQ(orx_df_kernel_iEditVal(s.task, ORX_DF_GRID_SIZE, size), 0);
    const auto sites = random_values<Real>(100, -5, double(size) + 5, 4);
    std::vector<int32_t> cells(100);
    ASSERT_EQ(
        Api<Real>::search(s.task, 0, 100, sites.data(), 0, nullptr, cells.data(), nullptr, nullptr, nullptr),
        0);
    for (size_t i = 0; i < 100; ++i)
      ASSERT_EQ(cells[i], std::upper_bound(x.begin(), x.begin() + size, sites[i]) - x.begin());
  }
  EXPECT_EQ(orx_df_kernel_iEditVal(s.task, ORX_DF_GRID_SIZE, int64_t(1) << 31), ORX_DF_ERROR_GRID_SIZE);
  DFTask* none = nullptr;
  for (const int64_t size : {int64_t(1) << 31, int64_t(3000000000), int64_t(1) << 32 | 5})
    EXPECT_EQ(Api<Real>::new_task(&none, size, x.data(), ORX_DF_UNIFORM_PARTITION, 0, nullptr, 0, 0),
              ORX_DF_ERROR_GRID_SIZE);
}

// Arrays that no memory could hold.
TYPED_TEST(Misuse, CountsBeyondMemory) {
  using Real = TypeParam;
  using A = Api<Real>;
  constexpr int64_t huge = PTRDIFF_MAX / int64_t(sizeof(Real)) / 2;
  Spline<Real> s({0, 1, 2, 3, 4, 5}, 0, {{0, 1, 0, 1, 0, 1}});
  Real c[20] = {};
  EXPECT_EQ(A::edit_spline(s.task, huge, 0, 0, nullptr, 0, nullptr, c, 0), ORX_DF_ERROR_MEMORY);
  s.describe(2, 0);
  ASSERT_EQ(A::linear(s.task, 0, 0, 0, nullptr), 0);
  ASSERT_EQ(A::edit_spline(s.task, huge, 0, 0, nullptr, 0, nullptr, nullptr, 0), 0);
  Readers<Real> readers;
  EXPECT_EQ(readers.interpolate(s.task), ORX_DF_ERROR_MEMORY);
  EXPECT_EQ(readers.integrate(s.task), ORX_DF_ERROR_MEMORY);
  ASSERT_EQ(A::edit_spline(s.task, 2, 0, 0, nullptr, 0, nullptr, nullptr, 0), 0);
  EXPECT_EQ(readers.interpolate(s.task, 4 * huge), ORX_DF_ERROR_MEMORY);
  EXPECT_TRUE(readers.untouched());
  DFTask* task = nullptr;
  for (const int64_t hint : {ORX_DF_ROWS, ORX_DF_COLUMNS, ORX_DF_FIRST_ONLY}) {
    EXPECT_EQ(A::new_task(&task, 6, s.x.data(), 0, 4 * huge, s.values.data(), hint, 0), ORX_DF_ERROR_MEMORY);
    EXPECT_EQ(orx_df_kernel_DeleteTask(&task), 0);
  }
}

TYPED_TEST(Misuse, CheckFlagNamesTheFirstBadBreakpoint) {
  using Real = TypeParam;
  const Real infinity = std::numeric_limits<Real>::infinity();
  const std::vector<Real> good = {0, 1, 2, 3, 4, 5, 6, 7};
  for (const auto& [index, value] : std::vector<std::pair<size_t, Real>>{
           {0, -infinity}, {0, NAN}, {3, 2}, {3, Real(1.5)}, {5, NAN}, {7, infinity}, {7, 6}}) {
    for (const bool uniform : {false, true}) {
      auto x = good;
      x[index] = value;
      if (uniform && index % 7 != 0) continue;
      if (uniform && value == 6) x.back() = x.front();
      for (const auto& call : builders<Real>()) {
        Ready<Real> s(call.order, call.kind);
        if (uniform) orx_df_kernel_iEditVal(s.task, ORX_DF_GRID_HINT, ORX_DF_UNIFORM_PARTITION);
        const Real ends[] = {x.front(), x.back()};
        ASSERT_EQ(Api<Real>::edit_pointer(s.task, ORX_DF_GRID, uniform ? ends : x.data()), 0);
        ASSERT_EQ(orx_df_kernel_iEditVal(s.task, ORX_DF_CHECK_FLAG, 1), 0);
        const int32_t expected = ORX_DF_ERROR_BREAKPOINT - int32_t(uniform ? index / 7 : index);
        Readers<Real> readers;
        EXPECT_EQ(call.run(s.task), expected) << call.name;
        EXPECT_EQ(readers.search(s.task), expected);
        EXPECT_EQ(readers.interpolate(s.task), expected);
        EXPECT_EQ(readers.interpolate(s.task, 1), expected);
        EXPECT_EQ(readers.integrate(s.task), expected);
        EXPECT_TRUE(readers.untouched());
        // The same breakpoints mended.
        ASSERT_EQ(Api<Real>::edit_pointer(s.task, ORX_DF_GRID, good.data()), 0);
        if (!uniform) {
          EXPECT_EQ(call.run(s.task), 0) << call.name;
        }
      }
    }
  }
  const Real ends[] = {-std::numeric_limits<Real>::max(), std::numeric_limits<Real>::max()};
  Spline<Real> wide({ends[0], 0, ends[1]}, ORX_DF_UNIFORM_PARTITION, {});
  ASSERT_EQ(orx_df_kernel_iEditVal(wide.task, ORX_DF_CHECK_FLAG, 1), 0);
  EXPECT_EQ(Readers<Real>().search(wide.task), ORX_DF_ERROR_BREAKPOINT - 1);
}

}  // namespace
