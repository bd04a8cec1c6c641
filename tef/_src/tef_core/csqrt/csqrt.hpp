// The square root with a real part that is not negative. Of x + i y it is
//
//   t + i y/(2 t)       for x >= 0,
//   |y|/(2 t) +- i t    for x < 0, with the sign of y,   t = ((|x| + |x + i y|)/2)^(1/2),
//
// where nothing cancels (W. Kahan, "Branch cuts for complex elementary functions", 1987).
#pragma once
#include "_complex/scalar.hpp"
#include "_complex/vectors.hpp"

ORX_ISA_BEGIN(orx::tef)

// The larger part of the root, t, and the smaller, |y|/(2 t).
template <class X>
struct RootParts {
  X larger, smaller;
};
template <class X>
inline Complex<X> root_of(Complex<X> z, RootParts<X> t) {
  const auto behind = less(z.re, X{});
  return {select(behind, t.smaller, t.larger), with_sign_of(select(behind, t.larger, t.smaller), z.im)};
}

// Of zeros it is zero, with the sign of the imaginary part.
template <class X, class Left>
inline void finish_root_of_zero(Complex<X> z, Left& left) {
  left.finish(is_zero(z), Complex<X>{X{}, z.im});
}

ORX_ISA_END
