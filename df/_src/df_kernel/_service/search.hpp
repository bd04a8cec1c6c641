// A search as search, interpolation and integration use it: which of the seven methods, with what it needs.
// For the Real of the file that includes it.
#pragma once

#include <cstdint>

#include "_service/task.hpp"

namespace {
using namespace orx::df;

enum SearchMethod : int32_t { kUniform, kQuasiUniform, kSorted, kPeak, kHybrid, kUserDef, kUserDefUniform };

using BlockSearch = int32_t(int32_t nx, const Real* grid, int32_t site_count, const Real* sites,
                            int32_t* start, Real value, int32_t unused, const int32_t* cell_table,
                            void* cells, int32_t flags, SearchCallback<Real> search, void* search_params,
                            int32_t* site_flags);

BlockSearch* const _Search1DDispatch[7] = {
    ORX_DF_NAME(DFUniformSearch1D),   ORX_DF_NAME(DFQuasiUniformSearch1D), ORX_DF_NAME(DFSortedSearch1D),
    ORX_DF_NAME(DFPeakSearch1D),      ORX_DF_NAME(DFHybridSearch1D),       ORX_DF_NAME(DFUserDefSearch1D),
    ORX_DF_NAME(DFUniUserDefSearch1D)};

// Where the most likely cell of a data hint is to be used.
int32_t check_data_hint(const Real* hint, int64_t nx, bool* peak) {
  *peak = hint && hint[1] == 1;
  if (!hint || hint[1] == 0) return ORX_DF_OK;
  return *peak && hint[4] >= 0 && hint[4] <= Real(nx) ? ORX_DF_OK : ORX_DF_ERROR_DATA_HINT;
}

// The inverse of the step of an even partition with the same ends.
Real reciprocal_step(const Task<Real>* task) {
  return Real(int32_t(task->gridSize) - 1) / (task->last() - task->grid[0]);
}

struct Search {
  const Task<Real>* task;
  SearchMethod method;
  bool stale_table;  // the count of breakpoints has been edited since the table was built
  Real value;        // what the method's block kernel takes under this name
  SearchCallback<Real> callback;
  void* params;

  // The cells of n sites as 32-bit integers. `start` carries a sorted search from block to block; `flags` is
  // room for one integer per site. Negative only where the call-back's status is.
  int32_t block(int32_t n, const Real* sites, int32_t* start, void* cells, int32_t* flags,
                int32_t width = 0) const {
    const auto nx = int32_t(task->gridSize);
    const int32_t whole_grid[] = {0, nx - 1};
    return _Search1DDispatch[method](nx, task->grid, n, sites, start, value, 0,
                                     stale_table ? whole_grid : task->cellTable, cells, width, callback,
                                     params, flags);
  }
};

// Chooses by what is known of grid and sites.
int32_t choose_search(const Task<Real>* task, int64_t site_hint, const Real* data_hint,
                      SearchCallback<Real> callback, void* params, Search* search) {
  bool peak = false;
  if (callback) {
    search->method = task->uniform() ? kUserDefUniform : kUserDef;
  } else if (task->uniform()) {
    search->method = kUniform;
  } else if (task->gridHint == ORX_DF_QUASI_UNIFORM_PARTITION) {
    search->method = kQuasiUniform;
  } else if (site_hint == ORX_DF_SORTED_SITES) {
    search->method = kSorted;
  } else {
    if (const int32_t bad = check_data_hint(data_hint, task->gridSize, &peak)) return bad;
    search->method = peak ? kPeak : kHybrid;
  }
  search->task = task;
  search->callback = callback;
  search->params = params;
  search->stale_table = task->table_size != task->gridSize;
  if (search->method == kHybrid)
    search->value = search->stale_table ? 0 : task->cellTableScale;  // 0 leads to the first bin
  else if (peak)
    search->value = data_hint[4];
  else if (task->uniform() || search->method == kQuasiUniform)
    search->value = reciprocal_step(task);
  else
    search->value = 0;
  return ORX_DF_OK;
}

}  // namespace
