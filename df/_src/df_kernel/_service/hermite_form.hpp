// Cubic cells from values and first derivatives at both ends.
#pragma once

#include "_service/builder.hpp"

namespace orx::df {

// T is a number or a vector of them: c[0] + c[1] t + c[2] t^2 + c[3] t^3 on a cell of width 1 / inverse, from
// its left value, the slope of its chord, and the derivatives at its ends.
template <class T>
struct HermiteCell {
  HermiteCell(T y0, T slope, T d0, T d1, T inverse) {
    c[0] = y0;
    c[1] = d0;
    c[2] = ((slope - d0) * 2 + (slope - d1)) * inverse;
    c[3] = (d0 - slope + (d1 - slope)) * (inverse * inverse);
  }
  T c[4];
};

// Writes cells `from` to `to` - 1; d[k] is the derivative at breakpoint from + k. It may stand in the last
// elements of the coefficients: each cell overwrites only derivatives that are no longer needed.
template <class Real, Storage S, Partition G>
void write_hermite_cells(const Values<Real, S>& y, const Grid<Real, G>& grid, const Real* d, Index from,
                         Index to, Real* coeffs) {
  Index i = from;
  for (; i + kLanes<Real> <= to; i += kLanes<Real>, d += kLanes<Real>) {
    const Vec<Real> left = y.vector(i), inverse = grid.inverses(i);
    const HermiteCell<Vec<Real>> cell(left, (y.vector(i + 1) - left) * inverse, load(d), load(d + 1),
                                      inverse);
    store_rows(coeffs + 4 * i, cell.c[0], cell.c[1], cell.c[2], cell.c[3]);
  }
  for (; i < to; ++i, ++d) {
    const Real inverse = grid.inverse(i);
    const HermiteCell<Real> cell(y[i], (y[i + 1] - y[i]) * inverse, d[0], d[1], inverse);
    std::copy_n(cell.c, 4, coeffs + 4 * i);
  }
}

}  // namespace orx::df
