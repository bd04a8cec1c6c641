// What is checked before a task's data are read: that they are there, and, on demand, that breakpoints ascend.
#pragma once

#include <algorithm>
#include <cstdint>

#include "_service/samples.hpp"
#include "_service/task.hpp"

namespace orx::df {

// Whether the first `count` of `room` pointers lead somewhere.
template <class T>
bool all_given(T* const* pointers, Index room, Index count) {
  return pointers && count <= room && std::find(pointers, pointers + count, nullptr) == pointers + count;
}

template <class Real>
int32_t check_values(const Task<Real>* task) {
  const Index count = task->funcHint == ORX_DF_COLUMNS ? 1 : task->functions();
  return all_given(task->funcs, task->func_room, count) ? ORX_DF_OK : ORX_DF_ERROR_FUNCS;
}

template <class Real>
int32_t check_coeffs(const Task<Real>* task) {
  return all_given(task->coeffs, task->coeff_room, task->functions()) ? ORX_DF_OK : ORX_DF_ERROR_COEFFS;
}

// The first breakpoint that is not finite or not above the one before it; on a uniform partition, whose range
// must be finite as well, 1 stands for the last one. -1: there is none.
template <class Real>
Index bad_breakpoint(const Task<Real>* task) {
  const Index n = task->uniform() ? 2 : task->size();
  const auto finite = [](Real x) { return x - x == 0; };
  if (!finite(task->grid[0])) return 0;
  for (Index i = 1; i < n; ++i)
    if (!finite(task->grid[i]) || !(task->grid[i] > task->grid[i - 1])) return i;
  return task->uniform() && !finite(task->grid[1] - task->grid[0]) ? 1 : -1;
}

// Done where the task's check flag is set: the status tells which breakpoint is bad.
template <class Real>
int32_t check_breakpoints(const Task<Real>* task) {
  const Index bad = task->checkFlag ? bad_breakpoint(task) : -1;
  return bad < 0 ? ORX_DF_OK : int32_t(std::max<int64_t>(int64_t(ORX_DF_ERROR_BREAKPOINT) - bad, INT32_MIN));
}

// A periodic spline ends as it begins.
template <class Real>
int32_t check_closure(const Task<Real>* task) {
  if (task->bndCondKind != ORX_DF_PERIODIC) return ORX_DF_OK;
  for (Index f = 0; f < task->functions(); ++f) {
    const Samples<Real> function(task, f);
    if (!(function.y(0) == function.y(function.nx - 1))) return ORX_DF_ERROR_NOT_PERIODIC;
  }
  return ORX_DF_OK;
}

// What a builder of splines of `order` needs besides its conditions.
template <class Real>
int32_t check_construction(const Task<Real>* task, int64_t order) {
  if (task->splineOrder != order) return ORX_DF_ERROR_METHOD;
  if (const int32_t bad = check_values(task)) return bad;
  if (const int32_t bad = check_coeffs(task)) return bad;
  if (const int32_t bad = check_breakpoints(task)) return bad;
  return check_closure(task);
}

}  // namespace orx::df
