// Counting breakpoints up and down from a start, several at a time.
#pragma once

#include <cstdint>

#include "_service/vectors.hpp"

namespace orx::df {

// The first c in [low, high] with c == high or x[c] > site, x[low .. high-1] ascending.
template <class Real>
int32_t bisect(const Real* x, int32_t low, int32_t high, Real site) {
  while (low < high) {
    const int32_t middle = low + (high - low) / 2;
    if (x[middle] > site)
      high = middle;
    else
      low = middle + 1;
  }
  return low;
}

// *cell becomes the first c >= start with c == nx or grid[c] > sites[site]. What a few vectors do not reach
// is bisected: a scan that begins far below its site costs no more than a search.
template <class Real>
inline void _df_search_sequential_vec_intrin_inline(const Real* grid, int32_t nx, const Real* sites,
                                                    int32_t site, int32_t* cell, int32_t start) {
  constexpr int vectors = 4;
  const Vec<Real> s = broadcast(sites[site]);
  int32_t c = start;
  for (int i = 0; i < vectors && c + kLanes<Real> <= nx; ++i, c += kLanes<Real>) {
    const unsigned below = lanes_at_most(load(grid + c), s);
    if (below != kAllLanes<Real>) {
      *cell = c + __builtin_popcount(below);
      return;
    }
  }
  *cell = bisect(grid, c, nx, sites[site]);
}

// *cell becomes the last c <= start with c == 0 or grid[c-1] <= sites[site].
template <class Real>
inline void _df_search_invsequential_vec_intrin_inline(const Real* grid, int32_t, const Real* sites,
                                                       int32_t site, int32_t* cell, int32_t start) {
  constexpr int vectors = 4;
  const Vec<Real> s = broadcast(sites[site]);
  int32_t c = start;
  for (int i = 0; i < vectors && c >= kLanes<Real>; ++i, c -= kLanes<Real>) {
    const unsigned below = lanes_at_most(load(grid + c - kLanes<Real>), s);
    if (below != 0) {
      *cell = c - kLanes<Real> + __builtin_popcount(below);
      return;
    }
  }
  *cell = bisect(grid, 0, c, sites[site]);
}

}  // namespace orx::df
