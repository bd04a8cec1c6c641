// A function as its values at the breakpoints: steps and look-up.
#pragma once

#include <algorithm>
#include <cstdint>

#include "_service/task.hpp"

namespace orx::df {

// Breakpoints and values of one function, whatever their form.
template <class Real>
struct Samples {
  explicit Samples(const Task<Real>* task, Index function)
      : nx(task->size()),
        grid(task->grid),
        step(task->uniform() ? (task->grid[1] - task->grid[0]) / Real(nx - 1) : 0),
        uniform(task->uniform()) {
    const bool columns = task->funcHint == ORX_DF_COLUMNS;
    values = columns ? task->funcs[0] + function : task->funcs[function];
    stride = columns ? std::max<Index>(task->functions(), 1) : 1;
  }
  Real x(Index i) const { return uniform ? grid[0] + Real(i) * step : grid[i]; }
  Real y(Index i) const { return values[i * stride]; }

  // The value of a step function in a cell. Left of the grid that is the first value, right of it the last.
  Real right_continuous(int32_t cell) const { return y(std::max(cell - 1, 0)); }
  Real left_continuous(int32_t cell, Real site) const {
    const bool at_breakpoint = cell > 0 && site == x(cell - 1);
    return y(std::min<Index>(at_breakpoint ? cell - 1 : cell, nx - 1));
  }
  // Whether a site is breakpoint i.
  bool at(Index i, Real site) const {
    if (i >= nx) return false;
    const Real off = site - x(i);
    return uniform ? off <= Real(0x1p-40) && off >= -Real(0x1p-40) : off == 0;
  }

  Index nx;
  const Real* grid;
  Real step;
  bool uniform;
  const Real* values;
  Index stride;
};

}  // namespace orx::df
