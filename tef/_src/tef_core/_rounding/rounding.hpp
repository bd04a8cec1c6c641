// The functions that differ in the direction of the processor's rounding alone. The control word is set as for all
// kernels: so "as controlled" is to nearest, ties to even, whatever the caller's rounding.
#pragma once
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class T, int direction>
struct Rounding : Kernel<T(T)> {
  static constexpr T kSafe = 1;  // a number with a fraction would raise inexact
  template <class X>
  static X eval(X x) {
    return round<direction>(x);
  }
};

ORX_ISA_END

// Both precisions of a function: ORX_ROUNDING(Ceil, kUp).
#define ORX_ROUNDING(Fn, direction)                              \
  using s##Fn##Kernel = orx::tef::Rounding<float, (direction)>;  \
  using d##Fn##Kernel = orx::tef::Rounding<double, (direction)>; \
  ORX_KERNEL(s, Fn, G9HAynn, s##Fn##Kernel)                      \
  ORX_KERNEL(d, Fn, G9HAynn, d##Fn##Kernel)
