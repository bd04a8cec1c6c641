// Cells as polynomials: from the cell of a site to the row of its coefficients, and derivatives there.
#pragma once

#include <algorithm>
#include <cstdint>

#include "_service/task.hpp"

namespace orx::df {

// The polynomial that serves a cell: sites outside the grid take the first or the last one.
inline int32_t polynomial_of_cell(int32_t cell, int32_t nx) { return std::clamp(cell - 1, 0, nx - 2); }

// power (power - 1) ..., k factors: what is left of t^power's coefficient after k derivations.
constexpr int falling_factorial(int power, int k) {
  int product = 1;
  for (int j = 0; j < k; ++j) product *= power - j;
  return product;
}

// The k-th derivative at t of the polynomial with `kOrder` coefficients c; T is a Real or a vector of them.
template <int kOrder, int k, class Real, class T>
T derivative(const T* c, T t) {
  T sum{};
  if constexpr (k < kOrder) {
    sum = c[kOrder - 1] * Real(falling_factorial(kOrder - 1, k));
    for (int power = kOrder - 2; power >= k; --power)
      sum = sum * t + c[power] * Real(falling_factorial(power, k));
  }
  return sum;
}

// The same for any number of coefficients.
template <class Real>
Real derivative(const Real* c, Index order, Index k, Real t) {
  Real sum = 0;
  for (Index power = order - 1; power >= k; --power) {
    Real factor = 1;
    for (Index j = 0; j < k; ++j) factor *= Real(power - j);
    sum = sum * t + c[power] * factor;
  }
  return sum;
}

}  // namespace orx::df
