// ln z and its multiple log10 z.
#include "_heap/complex/special.hpp"
#include "orx/base/api.hpp"
#include "orx/tef_scalar.h"

ORX_ISA_BEGIN(orx::tef)
namespace {

using namespace special;

// clang-format off
constexpr Entry kLn[5][4] = {
    // y:        0                finite           infinite              NaN
    /* 0    */ {usual,            usual,           value(inf, pi / 2),   value(nan, nan)},
    /* x    */ {usual,            usual,           value(inf, pi / 2),   value(nan, nan)},
    /* +inf */ {value(inf, 0),    value(inf, 0),   value(inf, pi / 4),   value(inf, nan)},
    /* NaN  */ {value(nan, nan),  value(nan, nan), value(inf, nan),      value(nan, nan)},
    /* -inf */ {value(inf, pi),   value(inf, pi),  value(inf, 3 * pi / 4), value(inf, nan)},
};
// clang-format on

// The sum of five numbers as if in fourfold precision (T. Ogita, S. Rump, S. Oishi, "Accurate sum and dot product", SIAM
// J. Sci. Comput. 26, 2005, algorithm SumK).
Sum accurate_sum(long double (&term)[5]) {
  for (int pass = 0; pass < 3; ++pass)
    for (int i = 1; i < 5; ++i) {
      const Sum s = exact_sum(term[i], term[i - 1]);
      term[i] = s.high;
      term[i - 1] = s.low;
    }
  return fast_sum(term[4], term[3] + (term[2] + (term[1] + term[0])));
}

bool near_one(long double square) { return square > 0.96875L && square < 1.0625L; }

}  // namespace

// ln |z|; the squares of doubles are exact, and next to 1 so is what they leave of it.
Sum ln_of_magnitude(Extended z) {
  const bool steep = __builtin_fabsl(z.im) > __builtin_fabsl(z.re);
  const long double a = steep ? z.im : z.re, b = steep ? z.re : z.im;
  const Sum p = exact_product(a, a), q = exact_product(b, b), square = p + q;
  if (!near_one(square.high)) return scaled(log_of(square), 0.5L);
  long double term[5] = {-1, p.high, q.high, p.low,
                         q.low};  // not p.high - 1: that rounds where a^2 is below 1/2
  return scaled(log1p_of(accurate_sum(term)), 0.5L);
}

Extended complex_ln(Extended z) {
  if (!quick::all_finite(z)) return special_value(kLn, z);
  const long double angle = quick::argument(z.im, z.re), square = z.re * z.re + z.im * z.im;
  if (square == 0) return {-1 / unfolded(0), angle};
  return {near_one(square) ? ln_of_magnitude(z).high : quick::ln(square) / 2, angle};
}

Extended complex_log10(Extended z) {
  const Extended ln = complex_ln(z);
  return {kLog10E * ln.re, kLog10E * ln.im};
}

ORX_ISA_END

ORX_COMPLEX_SCALAR(clog, complex_ln)
ORX_COMPLEX_SCALAR(clog10, complex_log10)
