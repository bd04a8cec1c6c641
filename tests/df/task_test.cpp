// Making, editing and deleting tasks: the record, every status, every allocation.
#include "_service/cell_table.hpp"
#include "fixture.h"

namespace {

using orx::df::Task;

template <class Real>
class Tasks : public ::testing::Test {};
TYPED_TEST_SUITE(Tasks, Precisions);

TYPED_TEST(Tasks, Construction) {
  using Real = TypeParam;
  const Real x[3] = {0, 1, 2}, y[15] = {};
  DFTask* task = nullptr;
  const auto make = [&](int64_t n, const Real* grid, int64_t grid_hint, int64_t count, const Real* values,
                        int64_t func_hint) {
    return Api<Real>::new_task(&task, n, grid, grid_hint, count, values, func_hint, 7);
  };
  EXPECT_EQ(make(1, nullptr, 3, 1, nullptr, 1), ORX_DF_ERROR_GRID_SIZE);
  EXPECT_EQ(make(3, nullptr, 3, 1, nullptr, 1), ORX_DF_ERROR_GRID);
  EXPECT_EQ(make(3, x, 3, 1, nullptr, 1), ORX_DF_ERROR_GRID_HINT);
  EXPECT_EQ(make(3, x, 1, 3, nullptr, 1), ORX_DF_ERROR_FUNCS);
  EXPECT_EQ(make(3, x, 1, 0, y, 1), ORX_DF_ERROR_FUNC_COUNT);
  EXPECT_EQ(make(3, x, 1, 1, y, 1), ORX_DF_ERROR_FUNC_HINT);

  EXPECT_EQ(make(3, x, 0, 0, nullptr, 0), 0);
  EXPECT_EQ(Task<Real>::of(task)->funcs, nullptr);
  EXPECT_EQ(orx_df_kernel_DeleteTask(&task), 0);
  EXPECT_EQ(task, nullptr);
  EXPECT_EQ(orx_df_kernel_DeleteTask(&task), ORX_DF_ERROR_TASK);

  for (const int64_t hint : {0, 16, 32, 128}) {
    ASSERT_EQ(make(3, x, 2, 5, y, hint), 0);
    const auto* t = Task<Real>::of(task);
    EXPECT_TRUE(t->ilp64Flag == 7 && t->taskMark == 4 && t->isDouble == (sizeof(Real) == 8) &&
                t->taskDim == 1 && t->gridSize == 3 && t->gridHint == 2 && t->funcHint == hint);
    EXPECT_EQ(t->funcs[0], y);
    if (hint != 32) {  // values in columns have a single pointer
      EXPECT_EQ(t->funcs[4], hint == 128 ? nullptr : y + 12);
    }
    EXPECT_EQ(orx_df_kernel_DeleteTask(&task), 0);
  }
}

// Each pair of the table bounds the cell of every site in its bin; the largest table has no room behind it.
TYPED_TEST(Tasks, CellTable) {
  using Real = TypeParam;
  for (const int64_t n : {17, 272, 16384, 16400, 40000})
    for (const double power : {1.0, 8.0}) {  // even, and crowded at one end
      SCOPED_TRACE(::testing::Message() << n << ' ' << power);
      std::vector<Real> x = random_values<Real>(n, 0, 1, 3);
      for (Real& each : x) each = Real(std::pow(each, power));
      std::sort(x.begin(), x.end());
      DFTask* task;
      ASSERT_EQ(Api<Real>::new_task(&task, n, x.data(), 0, 0, nullptr, 0, 0), 0);
      const auto* t = Task<Real>::of(task);
      const int bins = orx::df::cell_table_bins(n);
      EXPECT_EQ(bins, std::clamp<int64_t>(n / 16, 16, 1024));
      for (const Real site : random_values<Real>(2000, x[0], x.back(), 5)) {
        if (!(site > x[0] && site < x.back())) continue;
        const int bin = std::min(int(t->cellTableScale * (site - x[0])), bins - 1);
        const auto cell = std::upper_bound(x.begin(), x.end(), site) - x.begin();
        ASSERT_LE(t->cellTable[2 * bin], cell);
        ASSERT_GE(t->cellTable[2 * bin + 1], cell);
      }
      // New breakpoints count when the hint is set to non-uniform, and only then.
      const std::vector<int32_t> old(t->cellTable, t->cellTable + 2 * bins);
      std::vector<Real> other = x;
      for (size_t i = 1; i + 1 < x.size(); ++i) other[i] = (x[0] + 3 * x[i]) / 4;
      EXPECT_EQ(Api<Real>::edit_pointer(task, ORX_DF_GRID, other.data()), 0);
      EXPECT_EQ(orx_df_kernel_iEditVal(task, ORX_DF_GRID_HINT, 2), 0);
      EXPECT_TRUE(std::equal(old.begin(), old.end(), t->cellTable));
      EXPECT_EQ(orx_df_kernel_iEditVal(task, ORX_DF_GRID_HINT, 1), 0);
      EXPECT_FALSE(std::equal(old.begin(), old.end(), t->cellTable));
      EXPECT_EQ(orx_df_kernel_DeleteTask(&task), 0);
    }
}

TYPED_TEST(Tasks, EditSpline) {
  using Real = TypeParam;
  const auto edit = Api<Real>::edit_spline;
  Spline<Real> s(make_grid<Real>(10, 0.2), 0, {std::vector<Real>(10), std::vector<Real>(10)});
  const auto* t = Task<Real>::of(s.task);
  Real c[100], v[10] = {};
  EXPECT_EQ(edit(nullptr, -1, 0, 0, v, 0, v, c, 0), ORX_DF_ERROR_TASK);
  EXPECT_EQ(edit(s.task, -1, -1, 12, nullptr, 0, v, c, 0), ORX_DF_ERROR_SPLINE_ORDER);
  EXPECT_EQ(edit(s.task, 3, -1, 12, nullptr, 0, v, c, 0), ORX_DF_ERROR_SPLINE_KIND);
  EXPECT_EQ(t->splineOrder, 0);
  EXPECT_EQ(edit(s.task, 3, 8, 12, nullptr, 0, v, c, 0), ORX_DF_ERROR_BND_CONDS);
  EXPECT_EQ(t->splineKind, 8);  // what came before the error stays
  EXPECT_EQ(edit(s.task, 3, 0, 12, v, 0, v, c, 0), ORX_DF_ERROR_INT_COND_KIND);
  EXPECT_EQ(t->bndCondKind, 12);
  EXPECT_EQ(edit(s.task, 3, 0, 64, nullptr, 2, nullptr, c, 0), ORX_DF_ERROR_INT_CONDS);
  EXPECT_EQ(t->coeffs, nullptr);
  EXPECT_EQ(edit(s.task, 3, 1, 0, nullptr, 0, nullptr, c, 16), 0);
  EXPECT_EQ(t->coeffs[1], c + 30);  // a Subbotin spline has a cell for each breakpoint
  EXPECT_EQ(edit(s.task, 3, 0, 0, nullptr, 0, nullptr, c, 32), 0);
  EXPECT_EQ(t->coeffs[1], c + 27);
  EXPECT_EQ(edit(s.task, 3, 0, 0, nullptr, 0, nullptr, nullptr, 99), 0);
  EXPECT_EQ(t->coeffs[1], c + 27);
  EXPECT_EQ(t->coeffHint, 99);
  EXPECT_EQ(edit(s.task, 3, 0, 0, nullptr, 0, nullptr, c, 128), 0);
  EXPECT_EQ(t->coeffs[1], nullptr);

  Spline<Real> none(make_grid<Real>(10, 0.2), 0, {});
  EXPECT_EQ(edit(none.task, 3, 0, 0, nullptr, 0, nullptr, c, 0), ORX_DF_ERROR_FUNC_COUNT);
  EXPECT_EQ(Api<Real>::edit_pointer(none.task, ORX_DF_COEFFS, c), ORX_DF_ERROR_FUNC_COUNT);
}

TYPED_TEST(Tasks, EditPointers) {
  using Real = TypeParam;
  using A = Api<Real>;
  Spline<Real> s(make_grid<Real>(10, 0.2), 0, {std::vector<Real>(10), std::vector<Real>(10)});
  auto* t = Task<Real>::of(s.task);
  Real other[40] = {};
  const int32_t null_errors[] = {-1019, -1005, -1008, -1013, -1015, -1016, -1019};
  for (int64_t id = 0; id <= 6; ++id) {
    EXPECT_EQ(A::edit_pointer(nullptr, id, other), ORX_DF_ERROR_TASK);
    EXPECT_EQ(A::edit_pointer(s.task, id, nullptr), null_errors[id]);
  }
  for (int64_t id = 1; id <= 5; ++id) EXPECT_EQ(A::edit_pointer(s.task, id, other), 0);
  EXPECT_EQ(t->grid, other);
  EXPECT_EQ(t->funcs[1], other + 10);
  EXPECT_EQ(t->intConds, other);
  EXPECT_EQ(t->bndConds, other);
  EXPECT_EQ(t->coeffs[0], other);

  EXPECT_EQ(A::edit_indexed(nullptr, 2, 0, other), ORX_DF_ERROR_TASK);
  EXPECT_EQ(A::edit_indexed(s.task, 1, 0, other), ORX_DF_ERROR_PARAMETER);
  EXPECT_EQ(A::edit_indexed(s.task, 2, -1, other), ORX_DF_ERROR_INDEX);
  EXPECT_EQ(A::edit_indexed(s.task, 5, 2, other), ORX_DF_ERROR_INDEX);
  EXPECT_EQ(A::edit_indexed(s.task, 2, 1, nullptr), ORX_DF_ERROR_FUNCS);
  EXPECT_EQ(A::edit_indexed(s.task, 5, 1, nullptr), ORX_DF_ERROR_COEFFS);
  EXPECT_EQ(A::edit_indexed(s.task, 2, 1, other + 3), 0);
  EXPECT_EQ(A::edit_indexed(s.task, 5, 1, other + 4), 0);
  EXPECT_EQ(t->funcs[1], other + 3);
  EXPECT_EQ(t->coeffs[1], other + 4);

  // Another dimension: nothing happens, and that is well.
  t->taskDim = 2;
  EXPECT_EQ(A::edit_pointer(s.task, 99, nullptr), 0);
  EXPECT_EQ(A::edit_indexed(s.task, 99, 0, nullptr), 0);
  EXPECT_EQ(orx_df_kernel_iEditVal(s.task, 99, 0), 0);
  t->taskDim = 1;
}

TYPED_TEST(Tasks, EditValues) {
  using Real = TypeParam;
  Spline<Real> s(make_grid<Real>(10, 0.2), 0, {std::vector<Real>(10)});
  struct Row {
    int64_t id;
    std::vector<int64_t> good, bad;
    int32_t error;
  };
  const Row rows[] = {{14, {2, 10}, {1, -5}, -1004},
                      {15, {0, 1, 2, 4}, {3, 8, -1, 4 + (int64_t(1) << 32)}, -1006},
                      {16, {1, 7}, {0, -1}, -1007},
                      {17, {0, 16, 32, 128}, {1, 64}, -1009},
                      {18, {0, 9}, {-1}, -1010},
                      {19, {0, 5}, {-1, 6, 7, 8}, -1011},
                      {20, {0, 1, 2, 8, 12, 9}, {3, 4, -16}, -1012},
                      {21, {0, 3, 1000}, {-1}, -1014},
                      {22, {0, 16, 32, 128}, {1}, -1017},
                      {23, {0, 1}, {2, -1}, -1036}};
  EXPECT_EQ(orx_df_kernel_iEditVal(nullptr, 14, 2), ORX_DF_ERROR_TASK);
  EXPECT_EQ(orx_df_kernel_iEditVal(s.task, 13, 2), ORX_DF_ERROR_PARAMETER);
  EXPECT_EQ(orx_df_kernel_iEditVal(s.task, 24, 2), ORX_DF_ERROR_PARAMETER);
  for (const Row& row : rows) {
    for (const int64_t value : row.good)
      EXPECT_EQ(orx_df_kernel_iEditVal(s.task, row.id, value), 0) << row.id;
    for (const int64_t value : row.bad)
      EXPECT_EQ(orx_df_kernel_iEditVal(s.task, row.id, value), row.error) << row.id;
  }
  EXPECT_EQ(Task<Real>::of(s.task)->gridSize, 10);
  EXPECT_EQ(Task<Real>::of(s.task)->checkFlag, 1);
}

TYPED_TEST(Tasks, EachAllocationFailing) {
  using Real = TypeParam;
  const Real x[3] = {0, 1, 2};
  Real c[20] = {};
  const long before = orx_serv_live_blocks();
  for (int k = 1; k <= 3; ++k) {  // the task, the pointers, the table; what was made is in the task
    DFTask* task = nullptr;
    orx_serv_fail_allocation(k);
    EXPECT_EQ(Api<Real>::new_task(&task, 3, x, 0, 1, x, 0, 0), ORX_DF_ERROR_MEMORY);
    EXPECT_EQ(orx_df_kernel_DeleteTask(&task), k == 1 ? ORX_DF_ERROR_TASK : 0);
    EXPECT_EQ(orx_serv_live_blocks(), before);
  }
  Spline<Real> s({0, 1, 2}, 0, {{1, 2, 3}});
  s.describe(2, 0);
  orx_serv_fail_allocation(1);
  EXPECT_EQ(Api<Real>::edit_spline(s.task, 2, 0, 0, nullptr, 0, nullptr, c, 0), ORX_DF_ERROR_MEMORY);
  EXPECT_EQ(Task<Real>::of(s.task)->coeffs, nullptr);
  orx_serv_fail_allocation(1);
  EXPECT_EQ(Api<Real>::edit_pointer(s.task, ORX_DF_FUNCS, c), ORX_DF_ERROR_MEMORY);
  EXPECT_EQ(Task<Real>::of(s.task)->funcs, nullptr);
  orx_serv_fail_allocation(0);
}

}  // namespace
