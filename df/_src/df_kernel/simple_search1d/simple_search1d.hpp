// The seven block kernels. Each finds cells in 32 bits; where the caller's array holds 64-bit integers they
// are widened block by block.
#include "_service/task.hpp"
#include "simple_search1d/methods.hpp"

namespace {
using namespace orx::df;

constexpr int32_t kCallerCells = 2, kWideCells = 1;
constexpr int32_t kAllFinal = 1000;

// find(first, count, cells) in one go, or in blocks where the result is widened.
template <class Find>
void write_cells(int32_t n, void* out, int32_t flags, Find find) {
  if ((flags & (kCallerCells | kWideCells)) != (kCallerCells | kWideCells)) {
    find(0, n, static_cast<int32_t*>(out));
    return;
  }
  int32_t narrow[kSearchBlock];
  for (int32_t i = 0; i < n; i += kSearchBlock) {
    const int32_t count = std::min(kSearchBlock, n - i);
    find(i, count, narrow);
    std::copy_n(narrow, count, static_cast<int64_t*>(out) + i);
  }
}

// Asks the call-back block by block; refine(i, guess) is the cell of a site for which there is only a guess.
template <class Refine>
int32_t ask_callback(int32_t n, const Real* sites, void* out, int32_t flags, SearchCallback<Real> search,
                     void* params, int32_t* final, Refine refine) {
  int64_t cells[kSearchBlock];
  int32_t status = ORX_DF_OK;
  for (int32_t i = 0; i < n && status >= 0; i += kSearchBlock) {
    const int64_t count = std::min(kSearchBlock, n - i);
    std::fill_n(cells, count, 0);
    std::fill_n(final + i, count, 0);
    status = search(&count, sites + i, cells, final + i, params);
    if (status < 0) return status;
    if (status != kAllFinal)
      for (int32_t k = 0; k < count; ++k)
        if (!final[i + k]) cells[k] = refine(i + k, cells[k]);
    write_cells(int32_t(count), out, flags, [&](int32_t first, int32_t part, int32_t* narrow) {
      std::transform(cells + first, cells + first + part, narrow, [](int64_t cell) { return int32_t(cell); });
    });
    out = static_cast<char*>(out) + count * ((flags & 3) == 3 ? sizeof(int64_t) : sizeof(int32_t));
  }
  return status;
}

}  // namespace

#define ORX_DF_KERNEL(Method)                                                                               \
  ORX_API int32_t ORX_DF_NAME(DF##Method##Search1D)(                                                        \
      int32_t nx, const Real* grid, int32_t site_count, const Real* sites, [[maybe_unused]] int32_t* start, \
      [[maybe_unused]] Real value, int32_t, [[maybe_unused]] const int32_t* cell_table, void* cells,        \
      int32_t flags, [[maybe_unused]] SearchCallback<Real> search, [[maybe_unused]] void* search_params,    \
      [[maybe_unused]] int32_t* site_flags)

ORX_DF_KERNEL(Uniform) {
  write_cells(site_count, cells, flags,
              [=](int32_t i, int32_t n, int32_t* out) { uniform_cells(nx, grid, n, sites + i, value, out); });
  return ORX_DF_OK;
}

ORX_DF_KERNEL(QuasiUniform) {
  write_cells(site_count, cells, flags, [=](int32_t i, int32_t n, int32_t* out) {
    quasi_uniform_cells(nx, grid, n, sites + i, value, out);
  });
  return ORX_DF_OK;
}

ORX_DF_KERNEL(Sorted) {
  write_cells(site_count, cells, flags, [=](int32_t i, int32_t n, int32_t* out) {
    *start = sorted_cells(nx, grid, n, sites + i, *start, out);
  });
  return ORX_DF_OK;
}

ORX_DF_KERNEL(Peak) {
  write_cells(site_count, cells, flags,
              [=](int32_t i, int32_t n, int32_t* out) { peak_cells(nx, grid, n, sites + i, value, out); });
  return ORX_DF_OK;
}

ORX_DF_KERNEL(Hybrid) {
  write_cells(site_count, cells, flags, [=](int32_t i, int32_t n, int32_t* out) {
    hybrid_cells(nx, grid, n, sites + i, value, cell_table, out);
  });
  return ORX_DF_OK;
}

ORX_DF_KERNEL(UserDef) {
  return ask_callback(
      site_count, sites, cells, flags, search, search_params, site_flags, [=](int32_t i, int64_t guess) {
        return cell_from_guess(grid, nx, sites, i, int32_t(std::clamp<int64_t>(guess, 0, nx)));
      });
}

ORX_DF_KERNEL(UniUserDef) {
  return ask_callback(site_count, sites, cells, flags, search, search_params, site_flags,
                      [=](int32_t i, int64_t) {
                        int32_t cell;
                        uniform_cells(nx, grid, 1, sites + i, value, &cell);
                        return cell;
                      });
}
