// Complex functions of one element, for scalar routines: by the routines of the extended type.
#pragma once
#include "_complex/special.hpp"
#include "frame/control.hpp"
#include "orx/tef_scalar.h"

ORX_ISA_BEGIN(orx::tef)

using ScalarFunction = void(double re, double im, double result[2]);

template <ScalarFunction function, class T>
__attribute__((noinline)) void extended_body(const Complex<T>* a, Complex<T>* r) {
  double y[2];
  function(static_cast<double>(a->re), static_cast<double>(a->im), y);
  *r = {static_cast<T>(y[0]), static_cast<T>(y[1])};
}
template <ScalarFunction function, class T>
inline void by_extended(const Complex<T>* a, Complex<T>* r) {
  run_under<Control::kExtended, extended_body<function, T>>(a, r);
}

ORX_ISA_END
