// Polynomials whose coefficients are a row of a table, each lane's its own.
#pragma once
#include "frame/simd.hpp"

ORX_ISA_BEGIN(orx::tef)

// p[0] + p[1] r + ..., an even number of coefficients from the columns of a table.
template <int stride, int terms, class X, class F>
inline X polynomial_of_row(const double* table, F row, X r) {
  constexpr int pairs = terms / 2, fours = (pairs + 1) / 2;
  static_assert(terms % 2 == 0);
  X p[pairs];
  for (int i = 0; i < pairs; ++i) {
    X even, odd;
    gather_pairs<stride>(table + 2 * i, row, even, odd);
    p[i] = multiply_add(r, odd, even);
  }
  const X r2 = r * r, r4 = r2 * r2;
  for (int i = 0; i < pairs / 2; ++i) p[i] = multiply_add(r2, p[2 * i + 1], p[2 * i]);
  if constexpr (pairs % 2) p[fours - 1] = p[pairs - 1];
  X y = p[fours - 1];
  for (int i = fours - 2; i >= 0; --i) y = multiply_add(r4, y, p[i]);
  return y;
}

ORX_ISA_END
