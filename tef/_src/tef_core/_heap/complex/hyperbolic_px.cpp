// Hyperbolic and trigonometric functions; the latter are the former of iz.
#include "_heap/complex/special.hpp"
#include "orx/base/api.hpp"
#include "orx/tef_scalar.h"

ORX_ISA_BEGIN(orx::tef)
namespace {

using namespace special;

// clang-format off
constexpr Entry kSinh[4][4] = {
    // y:        0               finite           infinite           NaN
    /* 0    */ {usual,           usual,           invalid(0, nan),   value(0, nan)},
    /* x    */ {usual,           usual,           invalid(nan, nan), value(nan, nan)},
    /* inf  */ {value(inf, 0),   turned(inf),     invalid(inf, nan), value(inf, nan)},
    /* NaN  */ {value(nan, 0),   value(nan, nan), value(nan, nan),   value(nan, nan)},
};
constexpr Entry kCosh[4][4] = {
    // y:        0               finite           infinite           NaN
    /* 0    */ {usual,           usual,           invalid(nan, 0),   value(nan, 0)},
    /* x    */ {usual,           usual,           invalid(nan, nan), value(nan, nan)},
    /* inf  */ {value(inf, 0),   turned(inf),     invalid(inf, nan), value(inf, nan)},
    /* NaN  */ {value(nan, 0),   value(nan, nan), value(nan, nan),   value(nan, nan)},
};
// At infinity the imaginary part is 0 with the sign of sin 2y.
constexpr Entry kTanh[4][4] = {
    // y:        0               finite           infinite           NaN
    /* 0    */ {usual,           usual,           invalid(nan, nan), value(nan, nan)},
    /* x    */ {usual,           usual,           invalid(nan, nan), value(nan, nan)},
    /* inf  */ {value(1, 0),     value(1, 0),     value(1, 0),       value(1, 0)},
    /* NaN  */ {value(nan, 0),   value(nan, nan), value(nan, nan),   value(nan, nan)},
};
// clang-format on

struct Waves {
  long double sinh, cosh, sin, cos;
};
inline Waves waves(Extended z) {
  const quick::Hyperbola x = quick::sinh_cosh(quick::limited(z.re));
  const quick::Turn y = quick::sin_cos(z.im);
  return {x.sinh, x.cosh, y.sin, y.cos};
}

// The tangent is the quotient of sine and cosine times its conjugate. From here on cosh^2 and sinh^2 are e^2x/4 to all bits,
// and much larger than 1.
constexpr long double kFar = 40;

}  // namespace

Extended complex_sinh(Extended z) {
  if (!quick::all_finite(z)) return special_value(kSinh, Parity::kOdd, z);
  const Waves w = waves(z);
  return {w.sinh * w.cos, w.cosh * w.sin};
}

Extended complex_cosh(Extended z) {
  if (!quick::all_finite(z)) return special_value(kCosh, Parity::kEven, z);
  const Waves w = waves(z);
  return {w.cosh * w.cos, w.sinh * w.sin};
}

Extended complex_tanh(Extended z) {
  if (!quick::all_finite(z)) {
    const Extended y = special_value(kTanh, Parity::kOdd, z);
    if (is_nan(z.re) || !is_finite(z.im)) return y;
    const SinCos turn = sin_cos_of({z.im, 0});
    return {y.re, with_sign_of(0, turn.sin.high * turn.cos.high)};
  }
  const Waves w = waves(z);
  if (__builtin_fabsl(z.re) > kFar)
    return {with_sign_of(next_to_one(1), z.re), w.sin * w.cos / w.cosh / w.cosh};
  const long double square = w.sinh * w.sinh + w.cos * w.cos;
  return {w.sinh * w.cosh / square, w.sin * w.cos / square};
}

Extended complex_sin(Extended z) { return by_i(complex_sinh(times_i(z))); }
Extended complex_cos(Extended z) { return complex_cosh(times_i(z)); }
Extended complex_tan(Extended z) { return by_i(complex_tanh(times_i(z))); }

ORX_ISA_END

ORX_COMPLEX_SCALAR(csinh, complex_sinh)
ORX_COMPLEX_SCALAR(ccosh, complex_cosh)
ORX_COMPLEX_SCALAR(ctanh, complex_tanh)
ORX_COMPLEX_SCALAR(csin, complex_sin)
ORX_COMPLEX_SCALAR(ccos, complex_cos)
ORX_COMPLEX_SCALAR(ctan, complex_tan)
