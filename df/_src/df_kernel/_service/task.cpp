// Making, editing and deleting tasks.
#include "_service/task.hpp"

#include <cstring>

#include "_service/cell_table.hpp"
#include "_service/memory.hpp"

namespace orx::df {
namespace {

bool is_grid_hint(int64_t hint) {
  return hint == ORX_DF_NO_HINT || hint == ORX_DF_NON_UNIFORM_PARTITION ||
         hint == ORX_DF_QUASI_UNIFORM_PARTITION || hint == ORX_DF_UNIFORM_PARTITION;
}

bool is_storage_hint(int64_t hint) {
  return hint == ORX_DF_NO_HINT || hint == ORX_DF_ROWS || hint == ORX_DF_COLUMNS || hint == ORX_DF_FIRST_ONLY;
}

// Replaces `array` by a new one of `count` pointers: the first `given` of them lead to `base` and to what
// follows it, `stride` elements apart, the others are null.
template <class T>
int32_t replace_pointers(T**& array, int64_t count, int64_t given, T* base, int64_t stride) {
  orx_serv_deallocate(array);
  array = allocate_array<T*>(count);
  if (!array) return ORX_DF_ERROR_MEMORY;
  for (int64_t i = 0; i < count; ++i) array[i] = i < given ? base + i * stride : nullptr;
  return ORX_DF_OK;
}

template <class Real>
int32_t set_funcs(Task<Real>* task, const Real* base, int64_t hint, int64_t func_count, int64_t grid_size) {
  const int64_t count = hint == ORX_DF_COLUMNS ? 1 : std::max<int64_t>(func_count, 1);
  const int64_t given = hint == ORX_DF_FIRST_ONLY ? 1 : count;
  return replace_pointers(task->funcs, count, given, base, grid_size);
}

template <class Real>
int32_t set_coeffs(Task<Real>* task, Real* base, int64_t hint) {
  if (task->funcCount == 0) return ORX_DF_ERROR_FUNC_COUNT;
  const int64_t cells = task->gridSize - (task->splineKind == ORX_DF_SUBBOTIN ? 0 : 1);
  const int64_t given = hint == ORX_DF_FIRST_ONLY ? 1 : task->funcCount;
  return replace_pointers(task->coeffs, task->funcCount, given, base, task->splineOrder * cells);
}

template <class Real>
int32_t check_new_task(int64_t gridSize, const Real* grid, int64_t gridHint, int64_t funcCount,
                       const Real* funcs, int64_t funcHint) {
  if (gridSize < 2) return ORX_DF_ERROR_GRID_SIZE;
  if (!grid) return ORX_DF_ERROR_GRID;
  if (!is_grid_hint(gridHint)) return ORX_DF_ERROR_GRID_HINT;
  if (funcCount != 0 && !funcs) return ORX_DF_ERROR_FUNCS;
  if (funcCount < 0 || (funcCount == 0 && funcs)) return ORX_DF_ERROR_FUNC_COUNT;
  if (!is_storage_hint(funcHint)) return ORX_DF_ERROR_FUNC_HINT;
  return ORX_DF_OK;
}

template <class Real>
int32_t new_task(DFTask** out, int64_t gridSize, const Real* grid, int64_t gridHint, int64_t funcCount,
                 const Real* funcs, int64_t funcHint, int32_t ilp64Flag) {
  if (const int32_t bad = check_new_task(gridSize, grid, gridHint, funcCount, funcs, funcHint)) return bad;
  const auto task = static_cast<Task<Real>*>(orx_serv_allocate(sizeof(Task<Real>), 128));
  *out = reinterpret_cast<DFTask*>(task);
  if (!task) return ORX_DF_ERROR_MEMORY;
  std::memset(task, 0, sizeof *task);
  if (funcs)
    if (const int32_t bad = set_funcs(task, funcs, funcHint, funcCount, gridSize)) return bad;
  task->ilp64Flag = ilp64Flag;
  task->taskMark = 4;
  task->isDouble = sizeof(Real) == sizeof(double);
  task->taskDim = 1;
  task->gridSize = gridSize;
  task->grid = grid;
  task->gridHint = gridHint;
  task->funcCount = funcCount;
  task->funcHint = funcHint;
  task->cellTable = static_cast<int32_t*>(orx_serv_allocate(kCellTableBytes, 128));
  if (!task->cellTable) return ORX_DF_ERROR_MEMORY;
  if (task->uniform())
    reset_cell_table(task);
  else
    build_cell_table(task);
  return ORX_DF_OK;
}

template <class Real>
int32_t edit_spline(Task<Real>* task, int64_t splineOrder, int64_t splineKind, int64_t bndCondKind,
                    const Real* bndConds, int64_t intCondKind, const Real* intConds, Real* coeffs,
                    int64_t coeffHint) {
  if (!task) return ORX_DF_ERROR_TASK;
  if (splineOrder < 0) return ORX_DF_ERROR_SPLINE_ORDER;
  if (splineKind < 0) return ORX_DF_ERROR_SPLINE_KIND;
  task->splineOrder = splineOrder;
  task->splineKind = splineKind;
  const bool no_values = bndCondKind == 0 || bndCondKind == ORX_DF_NOT_A_KNOT ||
                         bndCondKind == ORX_DF_FREE_END || bndCondKind == ORX_DF_PERIODIC;
  if (!no_values && !bndConds) return ORX_DF_ERROR_BND_CONDS;
  task->bndCondKind = bndCondKind;
  task->bndConds = bndConds;
  if (intCondKind != 0 && !intConds) return ORX_DF_ERROR_INT_CONDS;
  if (intCondKind == 0 && intConds) return ORX_DF_ERROR_INT_COND_KIND;
  task->intCondKind = intCondKind;
  task->intConds = intConds;
  if (coeffs)
    if (const int32_t bad = set_coeffs(task, coeffs, coeffHint)) return bad;
  task->coeffHint = coeffHint;
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
  if (values)
    task->funcs[index] = pointer;
  else
    task->coeffs[index] = const_cast<Real*>(pointer);
  return ORX_DF_OK;
}

// Row i serves parameter ORX_DF_GRID_SIZE + i.
template <class Real>
struct ValueParameter {
  int64_t Task<Real>::*field;
  bool (*accepts)(int64_t value);
  int32_t error;
};

template <class Real>
constexpr ValueParameter<Real> value_parameters[] = {
    {&Task<Real>::gridSize, [](int64_t v) { return v >= 2; }, ORX_DF_ERROR_GRID_SIZE},
    {&Task<Real>::gridHint, is_grid_hint, ORX_DF_ERROR_GRID_HINT},
    {&Task<Real>::funcCount, [](int64_t v) { return v >= 1; }, ORX_DF_ERROR_FUNC_COUNT},
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
  const ValueParameter<Real>& row = value_parameters<Real>[parameter - ORX_DF_GRID_SIZE];
  if (!row.accepts(value)) return row.error;
  task->*row.field = value;
  if (parameter == ORX_DF_GRID_HINT && value == ORX_DF_NON_UNIFORM_PARTITION) build_cell_table(task);
  return ORX_DF_OK;
}

template <class Real>
void delete_task(Task<Real>* task) {
  orx_serv_deallocate(task->funcs);
  orx_serv_deallocate(task->coeffs);
  orx_serv_deallocate(task->cellTable);
  orx_serv_deallocate(task);
}

}  // namespace
}  // namespace orx::df

using namespace orx::df;

#define ORX_DF_TASK(t, Real)                                                                              \
  ORX_API int32_t orx_df_kernel_##t##NewTask1D(DFTask** task, int64_t gridSize, const Real* grid,         \
                                               int64_t gridHint, int64_t funcCount, const Real* funcs,    \
                                               int64_t funcHint, int32_t ilp64Flag) {                     \
    return new_task(task, gridSize, grid, gridHint, funcCount, funcs, funcHint, ilp64Flag);               \
  }                                                                                                       \
  ORX_API int32_t orx_df_kernel_##t##EditPPSpline1D(                                                      \
      DFTask* task, int64_t splineOrder, int64_t splineKind, int64_t bndCondKind, const Real* bndConds,   \
      int64_t intCondKind, const Real* intConds, Real* coeffs, int64_t coeffHint) {                       \
    return edit_spline(Task<Real>::of(task), splineOrder, splineKind, bndCondKind, bndConds, intCondKind, \
                       intConds, coeffs, coeffHint);                                                      \
  }                                                                                                       \
  ORX_API int32_t orx_df_kernel_##t##EditPtr(DFTask* task, int64_t parameter, const Real* pointer) {      \
    return edit_pointer(Task<Real>::of(task), parameter, pointer);                                        \
  }                                                                                                       \
  ORX_API int32_t orx_df_kernel_##t##EditIdxPtr(DFTask* task, int64_t parameter, int64_t index,           \
                                                const Real* pointer) {                                    \
    return edit_indexed_pointer(Task<Real>::of(task), parameter, index, pointer);                         \
  }

ORX_DF_TASK(d, double)
ORX_DF_TASK(s, float)

ORX_API int32_t orx_df_kernel_iEditVal(DFTask* task, int64_t parameter, int64_t value) {
  if (!task) return ORX_DF_ERROR_TASK;
  const auto as_double = Task<double>::of(task);
  return as_double->isDouble ? edit_value(as_double, parameter, value)
                             : edit_value(Task<float>::of(task), parameter, value);
}

// The two records differ in their last field alone, so that either type deletes both.
ORX_API int32_t orx_df_kernel_DeleteTask(DFTask** task) {
  if (!task || !*task) return ORX_DF_ERROR_TASK;
  delete_task(Task<double>::of(*task));
  *task = nullptr;
  return ORX_DF_OK;
}
