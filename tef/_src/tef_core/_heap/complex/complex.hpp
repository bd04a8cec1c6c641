// The complex functions in the extended type, behind the scalar routines and the kernels that go through them. Arguments
// come from doubles: no square of theirs, nor a product of two, leaves the extended range, so that textbook formulas need
// no scaling; what they need is to be free of cancellation.
#pragma once
#include "_heap/real/extended.hpp"
#include "frame/element.hpp"

ORX_ISA_BEGIN(orx::tef)

using Extended = Complex<long double>;

// iz and z/i, where a NaN keeps its sign: f(z) = g(iz)/i is how the sine comes from the hyperbolic one.
inline long double negated(long double x) { return is_nan(x) ? x : -x; }
inline Extended times_i(Extended z) { return {negated(z.im), z.re}; }
inline Extended by_i(Extended z) { return {z.im, negated(z.re)}; }

// ln |z|, z finite and not 0.
Sum ln_of_magnitude(Extended z);

Extended complex_exp(Extended z);
Extended complex_ln(Extended z);
Extended complex_log10(Extended z);
Extended complex_sqrt(Extended z);
Extended complex_pow(Extended a, Extended b);
Extended complex_sin(Extended z);
Extended complex_cos(Extended z);
Extended complex_tan(Extended z);
Extended complex_sinh(Extended z);
Extended complex_cosh(Extended z);
Extended complex_tanh(Extended z);
Extended complex_asin(Extended z);
Extended complex_acos(Extended z);
Extended complex_atan(Extended z);
Extended complex_asinh(Extended z);
Extended complex_acosh(Extended z);
Extended complex_atanh(Extended z);

ORX_ISA_END

// Exports the routine of a function of one argument.
#define ORX_COMPLEX_SCALAR(name, function)                                              \
  ORX_API void orx_tef_kernel_##name##_scalar(double re, double im, double result[2]) { \
    const orx::tef::Extended y = orx::tef::function({re, im});                          \
    result[0] = static_cast<double>(y.re);                                              \
    result[1] = static_cast<double>(y.im);                                              \
  }
