// Making, editing and deleting tasks.
#include "_service/task.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "_service/cell_table.hpp"
#include "_service/evaluator_number.hpp"
#include "orx/base/memory.hpp"

namespace orx::df {
namespace {

bool is_grid_hint(int64_t hint) {
  return hint == ORX_DF_NO_HINT || hint == ORX_DF_NON_UNIFORM_PARTITION ||
         hint == ORX_DF_QUASI_UNIFORM_PARTITION || hint == ORX_DF_UNIFORM_PARTITION;
}

bool is_storage_hint(int64_t hint) {
  return hint == ORX_DF_NO_HINT || hint == ORX_DF_ROWS || hint == ORX_DF_COLUMNS || hint == ORX_DF_FIRST_ONLY;
}

// Cells are counted in 32 bits.
bool is_grid_size(int64_t size) { return size >= 2 && size <= INT32_MAX; }

// Whether `rows` rows of `length` numbers can be in memory.
template <class Real>
bool fits_memory(int64_t rows, int64_t length) {
  return length == 0 || rows <= PTRDIFF_MAX / int64_t(sizeof(Real)) / length;
}

// Replaces `array` by a new one of `count` pointers: the first `given` of them lead to `base` and to what
// follows it, `stride` elements apart, the others are null.
template <class T>
int32_t replace_pointers(T**& array, Index& room, int64_t count, int64_t given, T* base, int64_t stride) {
  free_array(array);
  room = 0;
  if (!fits_memory<T>(given, stride)) return ORX_DF_ERROR_MEMORY;
  array = allocate_array<T*>(count);
  if (!array) return ORX_DF_ERROR_MEMORY;
  room = Index(count);
  for (Index i = 0; i < room; ++i) array[i] = i < given ? base + i * Index(stride) : nullptr;
  return ORX_DF_OK;
}

// Sets one pointer, and makes room for it first where the count of functions has been raised since.
template <class T>
int32_t set_pointer(T**& array, Index& room, Index count, Index index, T* pointer) {
  if (index >= room) {
    T** const longer = allocate_array<T*>(count);
    if (!longer) return ORX_DF_ERROR_MEMORY;
    std::fill(std::copy_n(array, room, longer), longer + count, nullptr);
    free_array(array);
    array = longer;
    room = count;
  }
  array[index] = pointer;
  return ORX_DF_OK;
}

template <class Real>
int32_t set_funcs(Task<Real>* task, const Real* base, int64_t hint, int64_t func_count, int64_t grid_size) {
  const int64_t count = hint == ORX_DF_COLUMNS ? 1 : std::max<int64_t>(func_count, 1);
  const int64_t given = hint == ORX_DF_FIRST_ONLY ? 1 : count;
  if (hint == ORX_DF_COLUMNS && !fits_memory<Real>(func_count, grid_size)) return ORX_DF_ERROR_MEMORY;
  return replace_pointers(task->funcs, task->func_room, count, given, base, grid_size);
}

template <class Real>
int32_t set_coeffs(Task<Real>* task, Real* base, int64_t hint) {
  if (task->funcCount == 0) return ORX_DF_ERROR_FUNC_COUNT;
  const int64_t cells = task->gridSize - (task->splineKind == ORX_DF_SUBBOTIN ? 0 : 1);
  const int64_t given = hint == ORX_DF_FIRST_ONLY ? 1 : task->funcCount;
  if (!fits_memory<Real>(cells, task->splineOrder)) return ORX_DF_ERROR_MEMORY;
  return replace_pointers(task->coeffs, task->coeff_room, task->funcCount, given, base,
                          task->splineOrder * cells);
}

// One function's polynomials of order 2 to 4, whose coefficients are there, over breakpoints that need no check.
template <class Real>
int32_t few_sites_kernel(const Task<Real>* task) {
  const int32_t evaluator = evaluator_number(task, false);
  const bool plain = evaluator >= kLinear && evaluator <= kCubic && task->funcCount == 1 &&
                     !task->checkFlag && task->table_size == task->gridSize &&
                     check_coeffs(task) == ORX_DF_OK;
  if (!plain) return -1;
  if (task->uniform()) return counts_exactly<Real>(task->gridSize) ? evaluator : -1;
  return evaluator + kFewSitesOrders * (task->gridHint == ORX_DF_QUASI_UNIFORM_PARTITION ? 1 : 2);
}

// Every editor's end.
template <class Real>
int32_t edited(Task<Real>* task, int32_t status) {
  if (!task) return status;
  task->few_sites_kernel = few_sites_kernel(task);
  if (task->few_sites_kernel >= 0 && task->uniform())
    task->uniform_cells = {int32_t(task->gridSize), task->grid[0], task->grid[1]};
  return status;
}

template <class Real>
int32_t check_new_task(int64_t grid_size, const Real* grid, int64_t grid_hint, int64_t func_count,
                       const Real* funcs, int64_t func_hint) {
  if (!is_grid_size(grid_size)) return ORX_DF_ERROR_GRID_SIZE;
  if (!grid) return ORX_DF_ERROR_GRID;
  if (!is_grid_hint(grid_hint)) return ORX_DF_ERROR_GRID_HINT;
  if (func_count != 0 && !funcs) return ORX_DF_ERROR_FUNCS;
  if (func_count < 0 || (func_count == 0 && funcs)) return ORX_DF_ERROR_FUNC_COUNT;
  if (!is_storage_hint(func_hint)) return ORX_DF_ERROR_FUNC_HINT;
  return ORX_DF_OK;
}

template <class Real>
int32_t new_task(DFTask** out, int64_t grid_size, const Real* grid, int64_t grid_hint, int64_t func_count,
                 const Real* funcs, int64_t func_hint, int32_t ilp64_flag) {
  if (!out) return ORX_DF_ERROR_TASK;
  if (const int32_t bad = check_new_task(grid_size, grid, grid_hint, func_count, funcs, func_hint))
    return bad;
  const auto task = allocate_array<Task<Real>>(1);
  *out = reinterpret_cast<DFTask*>(task);
  if (!task) return ORX_DF_ERROR_MEMORY;
  std::memset(task, 0, sizeof *task);
  if (funcs)
    if (const int32_t bad = set_funcs(task, funcs, func_hint, func_count, grid_size)) return bad;
  task->ilp64Flag = ilp64_flag;
  task->taskMark = 4;
  task->few_sites_kernel = -1;
  task->isDouble = sizeof(Real) == sizeof(double);
  task->taskDim = 1;
  task->gridSize = grid_size;
  task->grid = grid;
  task->gridHint = grid_hint;
  task->funcCount = func_count;
  task->funcHint = func_hint;
  task->cellTable = allocate_array<int32_t>(kCellTableBytes / int64_t(sizeof(int32_t)));
  if (!task->cellTable) return ORX_DF_ERROR_MEMORY;
  if (task->uniform())
    reset_cell_table(task);
  else
    build_cell_table(task);
  return ORX_DF_OK;
}

template <class Real>
int32_t edit_spline(Task<Real>* task, int64_t spline_order, int64_t spline_kind, int64_t bnd_cond_kind,
                    const Real* bnd_conds, int64_t int_cond_kind, const Real* int_conds, Real* coeffs,
                    int64_t coeff_hint) {
  if (!task) return ORX_DF_ERROR_TASK;
  if (spline_order < 0) return ORX_DF_ERROR_SPLINE_ORDER;
  if (spline_kind < 0) return ORX_DF_ERROR_SPLINE_KIND;
  task->splineOrder = spline_order;
  task->splineKind = spline_kind;
  const bool no_values = bnd_cond_kind == 0 || bnd_cond_kind == ORX_DF_NOT_A_KNOT ||
                         bnd_cond_kind == ORX_DF_FREE_END || bnd_cond_kind == ORX_DF_PERIODIC;
  if (!no_values && !bnd_conds) return ORX_DF_ERROR_BND_CONDS;
  task->bndCondKind = bnd_cond_kind;
  task->bndConds = bnd_conds;
  if (int_cond_kind != 0 && !int_conds) return ORX_DF_ERROR_INT_CONDS;
  if (int_cond_kind == 0 && int_conds) return ORX_DF_ERROR_INT_COND_KIND;
  task->intCondKind = int_cond_kind;
  task->intConds = int_conds;
  if (coeffs)
    if (const int32_t bad = set_coeffs(task, coeffs, coeff_hint)) return bad;
  task->coeffHint = coeff_hint;
  return ORX_DF_OK;
}

template <class Real>
int32_t edit_pointer(Task<Real>* task, int64_t parameter, const Real* pointer) {
  static constexpr int32_t null_error[] = {ORX_DF_ERROR_GRID, ORX_DF_ERROR_FUNCS, ORX_DF_ERROR_INT_CONDS,
                                           ORX_DF_ERROR_BND_CONDS, ORX_DF_ERROR_COEFFS};
  if (!task) return ORX_DF_ERROR_TASK;
  if (task->taskDim != 1) return ORX_DF_OK;
  if (parameter < ORX_DF_GRID || parameter > ORX_DF_COEFFS) return ORX_DF_ERROR_PARAMETER;
  if (!pointer) return null_error[parameter - ORX_DF_GRID];
  switch (parameter) {
    case ORX_DF_GRID:
      task->grid = pointer;
      return ORX_DF_OK;
    case ORX_DF_FUNCS:
      return set_funcs(task, pointer, task->funcHint, task->funcCount, task->gridSize);
    case ORX_DF_INT_CONDS:
      task->intConds = pointer;
      return ORX_DF_OK;
    case ORX_DF_BND_CONDS:
      task->bndConds = pointer;
      return ORX_DF_OK;
    default:
      return set_coeffs(task, const_cast<Real*>(pointer), task->coeffHint);
  }
}

template <class Real>
int32_t edit_indexed_pointer(Task<Real>* task, int64_t parameter, int64_t index, const Real* pointer) {
  if (!task) return ORX_DF_ERROR_TASK;
  if (task->taskDim != 1) return ORX_DF_OK;
  if (parameter != ORX_DF_FUNCS && parameter != ORX_DF_COEFFS) return ORX_DF_ERROR_PARAMETER;
  if (index < 0 || index >= task->funcCount) return ORX_DF_ERROR_INDEX;
  const bool values = parameter == ORX_DF_FUNCS;
  const bool array = values ? task->funcs != nullptr : task->coeffs != nullptr;
  if (!pointer || !array) return values ? ORX_DF_ERROR_FUNCS : ORX_DF_ERROR_COEFFS;
  const auto count = task->functions();
  if (values) return set_pointer(task->funcs, task->func_room, count, Index(index), pointer);
  return set_pointer(task->coeffs, task->coeff_room, count, Index(index), const_cast<Real*>(pointer));
}

// Row i serves parameter ORX_DF_GRID_SIZE + i.
template <class Real>
struct ValueParameter {
  int64_t Task<Real>::*field;
  bool (*accepts)(int64_t value);
  int32_t error;
};

template <class Real>
constexpr ValueParameter<Real> kValueParameters[] = {
    {&Task<Real>::gridSize, is_grid_size, ORX_DF_ERROR_GRID_SIZE},
    {&Task<Real>::gridHint, is_grid_hint, ORX_DF_ERROR_GRID_HINT},
    {&Task<Real>::funcCount, [](int64_t v) { return v >= 1 && v <= PTRDIFF_MAX; }, ORX_DF_ERROR_FUNC_COUNT},
    {&Task<Real>::funcHint, is_storage_hint, ORX_DF_ERROR_FUNC_HINT},
    {&Task<Real>::splineOrder, [](int64_t v) { return v >= 0; }, ORX_DF_ERROR_SPLINE_ORDER},
    {&Task<Real>::splineKind, [](int64_t v) { return v >= 0 && v <= ORX_DF_AKIMA; },
     ORX_DF_ERROR_SPLINE_KIND},
    {&Task<Real>::intCondKind, [](int64_t v) { return (v >= 0 && v <= 2) || (v & ORX_DF_KNOTS); },
     ORX_DF_ERROR_INT_COND_KIND},
    {&Task<Real>::bndCondKind, [](int64_t v) { return v >= 0; }, ORX_DF_ERROR_BND_COND_KIND},
    {&Task<Real>::coeffHint, is_storage_hint, ORX_DF_ERROR_COEFF_HINT},
};

template <class Real>
int32_t edit_value(Task<Real>* task, int64_t parameter, int64_t value) {
  if (task->taskDim != 1) return ORX_DF_OK;
  if (parameter < ORX_DF_GRID_SIZE || parameter > ORX_DF_CHECK_FLAG) return ORX_DF_ERROR_PARAMETER;
  if (parameter == ORX_DF_CHECK_FLAG) {
    if (value != 0 && value != 1) return ORX_DF_ERROR_CHECK_FLAG;
    task->checkFlag = int32_t(value);
    return ORX_DF_OK;
  }
  const ValueParameter<Real>& row = kValueParameters<Real>[parameter - ORX_DF_GRID_SIZE];
  if (!row.accepts(value)) return row.error;
  task->*row.field = value;
  if (parameter == ORX_DF_GRID_HINT && value == ORX_DF_NON_UNIFORM_PARTITION) build_cell_table(task);
  return ORX_DF_OK;
}

template <class Real>
void delete_task(Task<Real>* task) {
  free_array(task->funcs);
  free_array(task->coeffs);
  free_array(task->cellTable);
  free_array(task);
}

}  // namespace
}  // namespace orx::df

using namespace orx::df;

#define ORX_DF_TASK(t, Real)                                                                                 \
  ORX_API int32_t orx_df_kernel_##t##NewTask1D(DFTask** task, int64_t grid_size, const Real* grid,           \
                                               int64_t grid_hint, int64_t func_count, const Real* funcs,     \
                                               int64_t func_hint, int32_t ilp64_flag) {                      \
    return new_task(task, grid_size, grid, grid_hint, func_count, funcs, func_hint, ilp64_flag);             \
  }                                                                                                          \
  ORX_API int32_t orx_df_kernel_##t##EditPPSpline1D(                                                         \
      DFTask* task, int64_t spline_order, int64_t spline_kind, int64_t bnd_cond_kind, const Real* bnd_conds, \
      int64_t int_cond_kind, const Real* int_conds, Real* coeffs, int64_t coeff_hint) {                      \
    const auto t = Task<Real>::of(task);                                                                     \
    return edited(t, edit_spline(t, spline_order, spline_kind, bnd_cond_kind, bnd_conds, int_cond_kind,      \
                                 int_conds, coeffs, coeff_hint));                                            \
  }                                                                                                          \
  ORX_API int32_t orx_df_kernel_##t##EditPtr(DFTask* task, int64_t parameter, const Real* pointer) {         \
    const auto t = Task<Real>::of(task);                                                                     \
    return edited(t, edit_pointer(t, parameter, pointer));                                                   \
  }                                                                                                          \
  ORX_API int32_t orx_df_kernel_##t##EditIdxPtr(DFTask* task, int64_t parameter, int64_t index,              \
                                                const Real* pointer) {                                       \
    const auto t = Task<Real>::of(task);                                                                     \
    return edited(t, edit_indexed_pointer(t, parameter, index, pointer));                                    \
  }

ORX_DF_TASK(d, double)
ORX_DF_TASK(s, float)

ORX_API int32_t orx_df_kernel_iEditVal(DFTask* task, int64_t parameter, int64_t value) {
  if (const auto as_double = Task<double>::of(task))
    return edited(as_double, edit_value(as_double, parameter, value));
  const auto as_single = Task<float>::of(task);
  return as_single ? edited(as_single, edit_value(as_single, parameter, value)) : int32_t(ORX_DF_ERROR_TASK);
}

// The two records differ behind their pointers alone, so that either type deletes both.
ORX_API int32_t orx_df_kernel_DeleteTask(DFTask** task) {
  if (!task || !*task) return ORX_DF_ERROR_TASK;
  delete_task(reinterpret_cast<Task<double>*>(*task));
  *task = nullptr;
  return ORX_DF_OK;
}
