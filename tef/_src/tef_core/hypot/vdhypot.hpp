// (x^2 + y^2)^(1/2), double.
#pragma once
#include "hypot/hypot.hpp"

ORX_ISA_BEGIN(orx::tef)
inline constexpr Row<double> kHypotHalf = 0.5;

// What the square of x, whose rounded value is `square`, lacks.
template <class X>
inline X lost_in_square(X x, X square) {
  const auto part = split(x);
  const X product = part.high * part.low;
  return ((part.high * part.high - square) + (product + product)) + part.low * part.low;
}

// HA. The sum of squares is S and a rest; its root is h and half of what h^2 lacks, over h.
struct AccurateHypot {
  template <class X>
  static X root(X a, X b) {
    const X a2 = a * a, b2 = b * b;
    const auto S = fast_two_sum(a2, b2);
    const X rest = S.low + (lost_in_square(a, a2) + lost_in_square(b, b2));
    const X h = square_root(S.high), h2 = h * h;
    const X lacking = ((S.high - h2) - lost_in_square(h, h2)) + rest;
    return h + kHypotHalf * lacking / h;
  }
};

using dHypotHA = Hypot<double, AccurateHypot>;
using dHypotLA = Hypot<double, PlainHypot>;

ORX_ISA_END
