// e^(x + i y) = e^x (cos y + i sin y).
#pragma once
#include "_complex/scalar.hpp"
#include "_complex/vectors.hpp"
#include "sin/vdsincos.hpp"

ORX_ISA_BEGIN(orx::tef)

// The scalar routine. Overflow is reported, of finite arguments.
template <class T>
inline int _tef_cexpt_scalar(const Complex<T>* a, Complex<T>* r) {
  const Complex<T> z = *a;
  by_extended<orx_tef_kernel_cexp_scalar>(a, r);
  return is_finite(z) ? status_of(*r) : StatusOk;
}

ORX_ISA_END
