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

// e^(x + iy) with low parts.
Extended turned_power(Sum x, Sum y) {
  if (__builtin_fabsl(x.high) > quick::kMost) x = {with_sign_of(quick::kMost, x.high), 0};
  const Scaled power = exp_of(x);
  const SinCos angle = sin_cos_of(y);
  const long double size = power.value.high * power_of_two(power.exponent);
  return {size * angle.cos.high, size * angle.sin.high};
}

}  // namespace

Extended complex_exp(Extended z) {
  if (!quick::all_finite(z)) return special_value(kExp, z);
  const long double size = quick::exp(quick::limited(z.re));
  const quick::Turn turn = quick::sin_cos(z.im);
  return {size * turn.cos, size * turn.sin};
}

// e^(b ln a). As a formula it knows no exceptions: 0^1 has the product of an infinity and 0. The power's error is that of the
// product, whose magnitude multiplies that of the logarithm: from `large` on all of it has low parts.
Extended complex_pow(Extended a, Extended b) {
  constexpr long double large = 32;
  const Extended ln = complex_ln(a);
  const Extended product = {b.re * ln.re - b.im * ln.im, b.re * ln.im + b.im * ln.re};
  if (is_nan(product.re) || is_nan(product.im)) {
    const long double nan = product.re + product.im;
    return {nan, nan};
  }
  const long double size =
      (__builtin_fabsl(b.re) + __builtin_fabsl(b.im)) * (__builtin_fabsl(ln.re) + __builtin_fabsl(ln.im));
  if (size < large || !quick::is_finite(size)) return complex_exp(product);
  const Sum x = ln_of_magnitude(a), y = argument(a.im, a.re), b_re = {b.re, 0}, b_im = {b.im, 0};
  return turned_power(b_re * x - b_im * y, b_re * y + b_im * x);
}

ORX_ISA_END

ORX_COMPLEX_SCALAR(cexp, complex_exp)

ORX_API void orx_tef_kernel_cpow_scalar(double a_re, double a_im, double b_re, double b_im,
                                        double result[2]) {
  const orx::tef::Extended y = orx::tef::complex_pow({a_re, a_im}, {b_re, b_im});
  result[0] = static_cast<double>(y.re);
  result[1] = static_cast<double>(y.im);
}
