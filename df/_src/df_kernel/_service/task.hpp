// The record behind a DFTask, and how its fields are read.
#pragma once

#include <cstddef>
#include <cstdint>

#include "_service/uniform_cells.hpp"
#include "orx/base/api.hpp"
#include "orx/df.h"

namespace orx::df {

// Places in arrays that are in memory, so that they fit in a pointer's width. The interface's 64-bit integers
// are narrowed to it where loops begin.
using Index = ptrdiff_t;

template <class Real>
struct Task {
  int32_t ilp64Flag;  // 0: the caller's integer arrays hold 32-bit integers
  uint32_t taskMark;
  int32_t isDouble;
  int32_t taskDim;
  int64_t gridSize;
  const Real* grid;  // on a uniform partition two elements, the ends
  int64_t gridHint;
  int64_t funcCount;
  const Real** funcs;
  int64_t funcHint;
  int64_t splineOrder;
  int64_t splineKind;
  int64_t intCondKind;
  const Real* intConds;
  int64_t bndCondKind;
  const Real* bndConds;
  Real** coeffs;
  int64_t coeffHint;
  int32_t checkFlag;
  int32_t* cellTable;  // pairs (lower, upper), see cell_table.hpp
  Real cellTableScale;

  // Behind the record: what the task's own arrays were made for, so that a count that was edited since leads
  // nobody beyond their ends.
  Index func_room, coeff_room;
  int64_t table_size;

  // Which kernel serves calls for a few sites: by partition and order; -1 where such a call has more to look at.
  // The editors keep it, for a short call can hardly afford to ask all this.
  int32_t few_sites_kernel;
  // What such calls need of a uniform partition, made of the ends as they were at the last edit.
  UniformCells<Real> uniform_cells;

  // Null when there is no task, or when it is one of the other precision.
  static Task* of(DFTask* task) {
    const auto typed = reinterpret_cast<Task*>(task);
    return typed && typed->isDouble == (sizeof(Real) == sizeof(double)) ? typed : nullptr;
  }
  bool uniform() const { return gridHint == ORX_DF_UNIFORM_PARTITION; }
  Index size() const { return Index(gridSize); }
  Index functions() const { return Index(funcCount); }
  Real last() const { return grid[uniform() ? 1 : gridSize - 1]; }
};

#if defined(__i386__)
static_assert(offsetof(Task<double>, gridSize) == 16 && offsetof(Task<double>, funcs) == 44);
static_assert(offsetof(Task<double>, coeffs) == 96 && offsetof(Task<double>, cellTableScale) == 116);
static_assert(offsetof(Task<double>, func_room) == 124 && offsetof(Task<float>, func_room) == 120);
#endif

// Whether counts up to n are all numbers of type Real.
template <class Real>
bool counts_exactly(int64_t n) {
  return sizeof(Real) == sizeof(double) || n <= 1 << 24;
}

// The types of the call-backs by precision.
template <class Real>
struct Callbacks;
template <>
struct Callbacks<double> {
  using Search = orx_df_dsearch_cb;
  using Interp = orx_df_dinterp_cb;
  using Integr = orx_df_dintegr_cb;
};
template <>
struct Callbacks<float> {
  using Search = orx_df_ssearch_cb;
  using Interp = orx_df_sinterp_cb;
  using Integr = orx_df_sintegr_cb;
};
template <class Real>
using SearchCallback = typename Callbacks<Real>::Search;
template <class Real>
using InterpCallback = typename Callbacks<Real>::Interp;
template <class Real>
using IntegrCallback = typename Callbacks<Real>::Integr;

}  // namespace orx::df
