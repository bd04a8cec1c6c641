// e^z, and a^b by it.
#include "_heap/complex/special.hpp"
#include "orx/base/api.hpp"
#include "orx/tef_scalar.h"

ORX_ISA_BEGIN(orx::tef)
namespace {

using namespace special;

// clang-format off
constexpr Entry kExp[5][4] = {
    // y:        0              finite         infinite           NaN
    /* 0    */ {usual,          usual,         invalid(nan, nan), value(nan, nan)},
    /* x    */ {usual,          usual,         invalid(nan, nan), value(nan, nan)},
    /* +inf */ {value(inf, 0),  turned(inf),   invalid(inf, nan), value(inf, nan)},
    /* NaN  */ {value(nan, 0),  value(nan, nan), value(nan, nan), value(nan, nan)},
    /* -inf */ {turned(0),      turned(0),     value(0, 0),       value(0, 0)},
};
// clang-format on

// e^(x + iy). Beyond the double's range the power is cut off, so that it is finite, and a sine of 0 keeps it 0.
Extended turned_power(Sum x, Sum y) {
  constexpr long double most = 0x1p14L;
  constexpr int range = 14000;
  if (__builtin_fabsl(x.high) > most) x = {with_sign_of(most, x.high), 0};
  const Scaled power = exp_of(x);
  const SinCos angle = sin_cos_of(y);
  const long double scale = power_of_two(power.exponent > range    ? range
                                         : power.exponent < -range ? -range
                                                                   : power.exponent);
  return {power.value.high * angle.cos.high * scale, power.value.high * angle.sin.high * scale};
}

}  // namespace

Extended complex_exp(Extended z) {
  return all_finite(z) ? turned_power({z.re, 0}, {z.im, 0}) : special_value(kExp, z);
}

// e^(b ln a), where the logarithm, the product and the argument of the exponential have low parts: the error of the power
// is that of the product. As a formula it knows no exceptions: 0^1 has the product of an infinity and 0.
Extended complex_pow(Extended a, Extended b) {
  if ((a.re != 0 || a.im != 0) && all_finite(a) && all_finite(b)) {
    const Sum x = ln_of_magnitude(a), y = argument(a.im, a.re), b_re = {b.re, 0}, b_im = {b.im, 0};
    return turned_power(b_re * x - b_im * y, b_re * y + b_im * x);
  }
  const Extended ln = complex_ln(a);
  const Extended product = {b.re * ln.re - b.im * ln.im, b.re * ln.im + b.im * ln.re};
  if (is_nan(product.re) || is_nan(product.im)) {
    const long double nan = product.re + product.im;
    return {nan, nan};
  }
  return complex_exp(product);
}

ORX_ISA_END

ORX_COMPLEX_SCALAR(cexp, complex_exp)

ORX_API void orx_tef_kernel_cpow_scalar(double a_re, double a_im, double b_re, double b_im,
                                        double result[2]) {
  const orx::tef::Extended y = orx::tef::complex_pow({a_re, a_im}, {b_re, b_im});
  result[0] = static_cast<double>(y.re);
  result[1] = static_cast<double>(y.im);
}
