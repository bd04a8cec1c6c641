// The search methods on one block of sites. All give the same cell, the number of breakpoints at or below the
// site; they differ in what they know of the grid and of the sites.
#pragma once

#include <algorithm>
#include <cstdint>

#include "_service/cell_table.hpp"
#include "_service/uniform_cells.hpp"
#include "simple_search1d/scan.hpp"

namespace orx::df {

constexpr int32_t kSearchBlock = 128;

template <bool kEndsMeet, class Real>
void uniform_cells(const UniformCells<Real>& uniform, int32_t n, const Real* sites, int32_t* cells) {
  int32_t i = 0;
  for (; i + kLanes<Real> <= n; i += kLanes<Real>) {
    const auto cell = __builtin_convertvector(uniform.template of<kEndsMeet>(load(sites + i)), CellVec<Real>);
    __builtin_memcpy(cells + i, &cell, sizeof cell);
  }
  for (; i < n; ++i) cells[i] = uniform.of_one(sites[i]);
}

template <class Real>
void uniform_cells(int32_t nx, const Real* ends, int32_t n, const Real* sites, Real reciprocal_step,
                   int32_t* cells) {
  const UniformCells<Real> uniform(nx, ends[0], ends[1], reciprocal_step);
  if (uniform.ends_meet())
    uniform_cells<true>(uniform, n, sites, cells);
  else
    uniform_cells<false>(uniform, n, sites, cells);
  if (counts_exactly<Real>(nx)) return;
  for (int32_t i = 0; i < n; ++i) cells[i] = sites[i] >= ends[1] ? nx : std::min(cells[i], nx - 1);
}

// From a guess at most nx - 1, either way.
template <class Real>
int32_t cell_near(const Real* grid, int32_t nx, const Real* sites, int32_t i, int32_t guess) {
  int32_t cell = guess;
  if (sites[i] >= grid[guess])
    _df_search_sequential_vec_intrin_inline(grid, nx, sites, i, &cell, guess);
  else if (guess != 0 && grid[guess - 1] > sites[i])
    _df_search_invsequential_vec_intrin_inline(grid, nx, sites, i, &cell, guess);
  return cell;
}

// From a likely cell, 0 to nx.
template <class Real>
int32_t cell_from_guess(const Real* grid, int32_t nx, const Real* sites, int32_t i, int32_t guess) {
  if (guess < nx) return cell_near(grid, nx, sites, i, guess);
  int32_t cell = nx;
  if (grid[nx - 1] > sites[i]) _df_search_invsequential_vec_intrin_inline(grid, nx, sites, i, &cell, nx - 1);
  return cell;
}

// The cell of a uniform grid with the same ends as first guess.
template <class Real>
void quasi_uniform_cells(int32_t nx, const Real* grid, int32_t n, const Real* sites, Real reciprocal_step,
                         int32_t* cells) {
  const UniformCells<Real> uniform(nx, grid[0], grid[nx - 1], reciprocal_step);
  for (int32_t i = 0; i < n; ++i) cells[i] = uniform.of_one(sites[i]);
  for (int32_t i = 0; i < n; ++i)
    if (cells[i] != 0) cells[i] = cell_from_guess(grid, nx, sites, i, cells[i]);
}

template <class Real>
void peak_cells(int32_t nx, const Real* grid, int32_t n, const Real* sites, Real likely, int32_t* cells) {
  const auto guess = int32_t(likely);
  for (int32_t i = 0; i < n; ++i) cells[i] = cell_from_guess(grid, nx, sites, i, guess);
}

// Ascending sites: the scan for one goes on where that for the site before ended. Returns where the last one
// ended.
//
// Eight sites at a time while they ascend and all lie below grid[c + reach]: then the cell of each is c
// plus the number of breakpoints at or below it among the reach that follow c.
template <class Real>
int32_t sorted_cells(int32_t nx, const Real* grid, int32_t n, const Real* sites, int32_t c, int32_t* cells) {
  constexpr int group = 8, reach = 3, vectors = group / kLanes<Real>;
  const auto scan_to = [&](int32_t end, int32_t i) {
    for (; i < end; ++i) {
      _df_search_sequential_vec_intrin_inline(grid, nx, sites, i, &c, c);
      cells[i] = c;
    }
  };
  scan_to(std::min(n, 1), 0);
  int32_t i = 1;
  for (; i + group <= n; i += group) {
    const Real* window = grid + c;
    bool within = c + reach < nx;
    if (within) {
      const Vec<Real> bound = broadcast(window[reach]);
      unsigned inside = kAllLanes<Real>;
      for (int v = 0; v < vectors; ++v) {
        const Real* s = sites + i + v * kLanes<Real>;
        inside &= lanes_at_most(load(s - 1), load(s)) & ~lanes_at_most(bound, load(s));
      }
      within = inside == kAllLanes<Real>;
    }
    if (!within) {
      scan_to(i + group, i);
      continue;
    }
    for (int v = 0; v < vectors; ++v) {
      const Vec<Real> s = load(sites + i + v * kLanes<Real>);
      Vec<Real> passed = ones_at_most(broadcast(window[0]), s);
      for (int k = 1; k < reach; ++k) passed += ones_at_most(broadcast(window[k]), s);
      const CellVec<Real> cell = __builtin_convertvector(passed, CellVec<Real>) + c;
      __builtin_memcpy(cells + i + v * kLanes<Real>, &cell, sizeof cell);
    }
    const Real latest = sites[i + group - 1];
    for (int k = 0, from = c; k < reach; ++k) c += grid[from + k] <= latest;
  }
  scan_to(n, i);
  return c;
}

// No more than 16 breakpoints: all of them are counted.
template <class Real>
void counted_cells(int32_t nx, const Real* grid, int32_t n, const Real* sites, int32_t* cells) {
  for (int32_t i = 0; i < n; ++i) {
    int32_t cell = 0;
    for (int32_t k = 0; k < nx; ++k) cell += grid[k] <= sites[i];
    cells[i] = cell;
  }
}

// The bin of the look-up table that a site lies in; a site outside the grid, or one that is not a number, gets
// the nearest bin or any.
template <class Real>
class Bins {
 public:
  Bins(int32_t nx, Real first, Real scale)
      : first_(first), scale_(scale), last_(Real(cell_table_bins(nx) - 1)) {}
  int32_t of(Real site) const { return int32_t(whole(site)); }
  // The same for a number or a vector of them, before what is behind the point is cut off.
  template <class T>
  T whole(T sites) const {
    return smaller(greater(scale_ * (sites - first_), T{}), spread<T>(last_));
  }

 private:
  Real first_, scale_, last_;
};

// How many breakpoints the hybrid search counts at the end.
constexpr int32_t kCounted = 8;

// Of the breakpoints `from` to `from` + count - 1: `from` and as many as are at or below the site.
template <int32_t count, class Real>
[[gnu::always_inline]] inline int32_t count_from(const Real* grid, int32_t from, const Real& site) {
  const Vec<Real> s = broadcast(site);
  int32_t cell = from;
  for (int32_t k = 0; k < count; k += kLanes<Real>)
    cell += __builtin_popcount(lanes_at_most(load(grid + from + k), s));
  return cell;
}

// One step of halving: the greater of two breakpoints, `at` and the one `half` above it, that is at or below
// the site, or `at`. No branch, for none could be foretold.
template <class Real>
[[gnu::always_inline]] inline int32_t halved(const Real* grid, int32_t at, int32_t half, const Real& site) {
  return at + (half & -int32_t(grid[at + half] <= site));
}

// The table narrows each site to a few breakpoints, at most as many as the widest pair of the block has;
// halving without a branch, the whole block step by step so that the loads of many sites are under way at
// once, and a count of the last few find the cell. In `cells` stands meanwhile a breakpoint at or below the
// site, or 0.
template <class Real>
void hybrid_block(int32_t nx, const Real* grid, int32_t n, const Real* sites, Real scale,
                  const int32_t* table, int32_t* cells) {
  const Bins<Real> bins(nx, grid[0], scale);
  const Real last = grid[nx - 1];
  for (int32_t i = 0; i < n; ++i) cells[i] = bins.of(sites[i]);
  int32_t width = 1;
  for (int32_t i = 0; i < n; ++i) {
    const int32_t* pair = table + 2 * cells[i];
    width = std::max(width, pair[1] - pair[0]);
    cells[i] = pair[0];
  }
  for (int32_t i = 0; i < n; ++i) cells[i] = std::min(cells[i], nx - 1 - width);
  for (; width > kCounted; width -= width / 2)
    for (int32_t i = 0; i < n; ++i) cells[i] = halved(grid, cells[i], width / 2, sites[i]);
  for (int32_t i = 0; i < n; ++i) {
    const int32_t cell = count_from<kCounted>(grid, std::min(cells[i], nx - kCounted), sites[i]);
    cells[i] = sites[i] >= last ? nx : cell;
  }
}

template <class Real>
void hybrid_cells(int32_t nx, const Real* grid, int32_t n, const Real* sites, Real scale,
                  const int32_t* table, int32_t* cells) {
  if (nx <= 16) return counted_cells(nx, grid, n, sites, cells);
  for (int32_t i = 0; i < n; i += kSearchBlock)
    hybrid_block(nx, grid, std::min(kSearchBlock, n - i), sites + i, scale, table, cells + i);
}

}  // namespace orx::df
