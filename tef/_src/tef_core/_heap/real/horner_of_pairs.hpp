// Polynomials between Horner's scheme and Estrin's: c[0] + c[1] x + ..., by pairs of terms from the top down. Half as long a
// chain as Horner's, one multiplication more, and no power above x2 = x * x, where higher ones might underflow.
#pragma once
#include "frame/simd.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class X, class C, int terms>
inline X horner_of_pairs(X x, X x2, const C (&c)[terms]) {
  const auto pair = [&](int i) {
    return i + 1 < terms ? multiply_add(x, c[i + 1], c[i]) : constant<X>(c[i]);
  };
  constexpr int last = (terms - 1) / 2 * 2;
  X y = pair(last);
  for (int i = last - 2; i >= 0; i -= 2) y = multiply_add(y, x2, pair(i));
  return y;
}

ORX_ISA_END
