// The look-up table of the hybrid search: the range of the grid in equal bins, and for each bin a pair
// (lower, upper) of grid indices between which the cell of every site in that bin lies.
#pragma once

#include <algorithm>
#include <cstdint>

#include "_service/task.hpp"

namespace orx::df {

constexpr int32_t kCellTableBytes = 8192;
constexpr int32_t kCellTableMaxBins = kCellTableBytes / int32_t(2 * sizeof(int32_t));

inline int32_t cell_table_bins(int32_t grid_size) {
  return std::clamp(grid_size / 16, 16, kCellTableMaxBins);
}

// One bin for the whole grid: what a table holds until it is built.
template <class Real>
void reset_cell_table(Task<Real>* task) {
  task->cellTable[0] = 0;
  task->cellTable[1] = int32_t(task->gridSize - 1);
  task->cellTableScale = 0;
  task->table_size = task->gridSize;
}

template <class Real>
void build_cell_table(Task<Real>* task) {
  struct Pair {
    int32_t lower, upper;
  };
  const auto pairs = reinterpret_cast<Pair*>(task->cellTable);
  const auto n = int32_t(task->gridSize), bins = cell_table_bins(n);
  const Real* x = task->grid;
  const Real scale = task->cellTableScale = 1 / ((x[n - 1] - x[0]) / Real(bins));
  task->table_size = n;
  std::fill_n(pairs, bins, Pair{-1, -1});
  pairs[0].lower = 0;
  for (int32_t i = 1; i < n; ++i) {
    // A grid that is not ascending must not lead out of the table.
    const Real bin = scale * (x[i] - x[0]);
    const int32_t k = bin > 0 ? int32_t(std::min(bin, Real(bins))) : 0;
    if (k == 0) continue;
    if (pairs[k - 1].upper == -1) pairs[k - 1].upper = i;
    if (k + 1 < bins) pairs[k + 1].lower = i;  // the last breakpoint has no bin above it
  }
  pairs[bins - 1].upper = n - 1;
  for (int32_t b = 1; b < bins; ++b)
    if (pairs[b].lower == -1) pairs[b].lower = pairs[b - 1].lower;
  for (int32_t b = bins - 2; b >= 0; --b)
    if (pairs[b].upper == -1) pairs[b].upper = pairs[b + 1].upper;
}

}  // namespace orx::df
