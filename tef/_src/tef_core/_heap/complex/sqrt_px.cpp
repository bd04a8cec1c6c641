// The square root with a real part that is not negative.
#include "_heap/complex/special.hpp"
#include "orx/base/api.hpp"
#include "orx/tef_scalar.h"

ORX_ISA_BEGIN(orx::tef)
namespace {

using namespace special;

// clang-format off
constexpr Entry kSqrt[5][4] = {
    // y:        0                finite           infinite         NaN
    /* 0    */ {usual,            usual,           value(inf, inf), value(nan, nan)},
    /* x    */ {usual,            usual,           value(inf, inf), value(nan, nan)},
    /* +inf */ {value(inf, 0),    value(inf, 0),   value(inf, inf), value(inf, nan)},
    /* NaN  */ {value(nan, nan),  value(nan, nan), value(inf, inf), value(nan, nan)},
    /* -inf */ {value(0, inf),    value(0, inf),   value(inf, inf), value(nan, inf)},
};
// clang-format on

}  // namespace

// Of the parts the one that is a sum of magnitudes comes first; their product is y/2.
Extended complex_sqrt(Extended z) {
  if (!quick::all_finite(z)) return special_value(kSqrt, z);
  if (z.re == 0 && z.im == 0) return {0, z.im};
  const long double larger =
      square_root((__builtin_fabsl(z.re) + square_root(z.re * z.re + z.im * z.im)) / 2);
  const long double other = z.im / (2 * larger);
  return z.re < 0 ? Extended{__builtin_fabsl(other), with_sign_of(larger, z.im)} : Extended{larger, other};
}

ORX_ISA_END

ORX_COMPLEX_SCALAR(csqrt, complex_sqrt)
