// Inverse hyperbolic and trigonometric functions. Those of sine and cosine stand on one routine, by T. Hull, T. Fairgrieve,
// P. Tang, "Implementing the complex arcsine and arccosine functions using exception handling", ACM TOMS 23 (1997); in the
// extended range their special treatment of large and tiny arguments falls away. Branch cuts are those of W. Kahan, "Branch
// cuts for complex elementary functions, or much ado about nothing's sign bit" (1987): zeros tell the side.
#include "_heap/complex/special.hpp"
#include "orx/base/api.hpp"
#include "orx/tef_scalar.h"

ORX_ISA_BEGIN(orx::tef)
namespace {

using namespace special;

// clang-format off
constexpr Entry kAcos[5][4] = {
    // y:        0                 finite             infinite                NaN
    /* 0    */ {usual,             usual,             value(pi / 2, -inf),    value(pi / 2, nan)},
    /* x    */ {usual,             usual,             value(pi / 2, -inf),    value(nan, nan)},
    /* +inf */ {value(0, -inf),    value(0, -inf),    value(pi / 4, -inf),    value(nan, -inf)},
    /* NaN  */ {value(nan, nan),   value(nan, nan),   value(nan, -inf),       value(nan, nan)},
    /* -inf */ {value(pi, -inf),   value(pi, -inf),   value(3 * pi / 4, -inf), value(nan, -inf)},
};
constexpr Entry kAcosh[5][4] = {
    // y:        0                 finite             infinite                NaN
    /* 0    */ {usual,             usual,             value(inf, pi / 2),     value(nan, nan)},
    /* x    */ {usual,             usual,             value(inf, pi / 2),     value(nan, nan)},
    /* +inf */ {value(inf, 0),     value(inf, 0),     value(inf, pi / 4),     value(inf, nan)},
    /* NaN  */ {value(nan, nan),   value(nan, nan),   value(inf, nan),        value(nan, nan)},
    /* -inf */ {value(inf, pi),    value(inf, pi),    value(inf, 3 * pi / 4), value(inf, nan)},
};
constexpr Entry kAsinh[4][4] = {
    // y:        0                 finite             infinite                NaN
    /* 0    */ {usual,             usual,             value(inf, pi / 2),     value(nan, nan)},
    /* x    */ {usual,             usual,             value(inf, pi / 2),     value(nan, nan)},
    /* inf  */ {value(inf, 0),     value(inf, 0),     value(inf, pi / 4),     value(inf, nan)},
    /* NaN  */ {value(nan, 0),     value(nan, nan),   value(inf, nan),        value(nan, nan)},
};
constexpr Entry kAtanh[4][4] = {
    // y:        0                 finite             infinite                NaN
    /* 0    */ {usual,             usual,             value(0, pi / 2),       value(0, nan)},
    /* x    */ {usual,             usual,             value(0, pi / 2),       value(nan, nan)},
    /* inf  */ {value(0, pi / 2),  value(0, pi / 2),  value(0, pi / 2),       value(0, nan)},
    /* NaN  */ {value(nan, nan),   value(nan, nan),   value(0, pi / 2),       value(nan, nan)},
};
// clang-format on

// Of x + iy in the first quadrant. With r and s the distances from -1 and 1, a = (r + s)/2 >= 1 and b = x/a <= 1, the
// arcsine is asin b + i ln(a + sqrt(a^2 - 1)).
struct Arc {
  long double
      leg;  // sqrt(a^2 - x^2): the real part of the arcsine is the angle of (leg, x), of the arccosine (x, leg)
  long double log;  // the imaginary part's magnitude
};
Arc arc(long double x, long double y) {
  const long double square = y * y;
  const long double r = square_root((x + 1) * (x + 1) + square), s = square_root((x - 1) * (x - 1) + square);
  const long double a = (r + s) / 2, sum = a + x;
  // r - (x + 1), and s - |x - 1| where it is needed: y^2 over the sum. On the axis within [-1, 1] both are 0.
  const long double above = square / (r + (x + 1));
  long double leg, a_less_1;
  if (x <= 1) {
    const long double rest = s + (1 - x);
    leg = square_root(sum / 2 * (above + rest));
    a_less_1 = (above + (rest == 0 ? 0 : square / rest)) / 2;
  } else {
    const long double rest = s + (x - 1);
    leg = y * square_root((sum / (r + (x + 1)) + sum / rest) / 2);
    a_less_1 = (above + rest) / 2;
  }
  return {leg, quick::log1p(a_less_1 + square_root(a_less_1 * (a + 1)))};
}
Arc arc(Extended z) { return arc(__builtin_fabsl(z.re), __builtin_fabsl(z.im)); }

}  // namespace

Extended complex_acos(Extended z) {
  if (!quick::all_finite(z)) return special_value(kAcos, z);
  const Arc at = arc(z);
  return {quick::argument(at.leg, z.re), with_sign_of(at.log, -z.im)};
}

Extended complex_acosh(Extended z) {
  if (!quick::all_finite(z)) return special_value(kAcosh, z);
  const Arc at = arc(z);
  return {at.log, with_sign_of(quick::argument(at.leg, z.re), z.im)};
}

Extended complex_asinh(Extended z) {
  if (!quick::all_finite(z)) return special_value(kAsinh, Parity::kOdd, z);
  const Arc at = arc({z.im, z.re});
  return {with_sign_of(at.log, z.re), quick::argument(z.im, at.leg)};
}

// ln((1 + z)/(1 - z))/2.
Extended complex_atanh(Extended z) {
  if (!quick::all_finite(z)) return special_value(kAtanh, Parity::kOdd, z);
  const long double x = __builtin_fabsl(z.re), y = z.im, square = y * y;
  const long double quotient = 4 * x / ((1 - x) * (1 - x) + square);
  const long double size = quick::is_finite(quotient) ? quick::log1p(quotient) / 4 : quotient;
  return {with_sign_of(size, z.re), quick::argument(2 * y, (1 - x) * (1 + x) - square) / 2};
}

Extended complex_asin(Extended z) { return by_i(complex_asinh(times_i(z))); }
Extended complex_atan(Extended z) { return by_i(complex_atanh(times_i(z))); }

ORX_ISA_END

ORX_COMPLEX_SCALAR(cacos, complex_acos)
ORX_COMPLEX_SCALAR(cacosh, complex_acosh)
ORX_COMPLEX_SCALAR(casinh, complex_asinh)
ORX_COMPLEX_SCALAR(catanh, complex_atanh)
ORX_COMPLEX_SCALAR(casin, complex_asin)
ORX_COMPLEX_SCALAR(catan, complex_atan)
