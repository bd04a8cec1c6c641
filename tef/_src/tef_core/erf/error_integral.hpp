// What the error function, its complement and the normal distribution share: the step from a point of a grid.
//
// With a the point of the grid next to x, d = x - a, t = a d and u = d^2,
//
//   erf x = erf a + D d (1 + g(t, u)),   D = 2/sqrt(pi) e^(-a^2),
//   1 + g = integral of e^(-2 t v - u v^2), v from 0 to 1 = sum of (-2 t)^k (-u)^m / (k! m! (k + 2m + 1)).
//
// The table knows erf a and D, the series depends on a through t alone.
#pragma once
#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

// The grid: multiples of 2^-7. The sum with the shifter has the row in its low bits.
constexpr Row<double> kErfGridShifter = 0x1p+45;

// x c for tiny x, c being high + low with a high part between 1/2 and 2; rounded once, also to denormals, and these raise
// underflow.
template <class X>
inline X tiny_product(X x, double high, double low) {
  const X up = broadcast<X>(0x1p300), down = broadcast<X>(0x1p-300);
  const X scaled = magnitude(x) * up;
  const auto product = exact_product(scaled, broadcast<X>(high));
  const X rest = product.low + scaled * broadcast<X>(low);
  const X normal = product.high + rest;
  // The grid of denormals, 2^-1074, is 2^-774 here.
  const X grid = broadcast<X>(0x1p-722);
  const X on_grid = product.high + grid;
  const X left = (product.high - (on_grid - grid)) + rest;
  const X denormal = (on_grid + left) - grid;
  const X y = select(less(normal, grid), denormal, normal) * down;
  raise_underflow_of_denormals(y);
  return with_sign_of(y, x);
}

ORX_ISA_END
