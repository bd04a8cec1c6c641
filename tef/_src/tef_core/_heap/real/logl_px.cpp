// ln x and ln(1 + x) of the extended type: a significand times a short reciprocal from a table is 1 + f, and
// ln x = k ln 2 - ln r + ln(1 + f) (P. T. P. Tang, "Table-driven implementation of the logarithm function in IEEE
// floating-point arithmetic", ACM TOMS 16, 1990). Near 1 the series is in x - 1 itself.
#include "_heap/real/extended.hpp"
#include "orx/base/api.hpp"
#include "orx/tef_scalar.h"

ORX_API const float orx_tef_core_rcp_table_256[256] __attribute__((aligned(64))) = {
#include "_heap/real/rcp.inc"
};
ORX_API const double orx_tef_core_double_rcp_table_256[256] __attribute__((aligned(64))) = {
#include "_heap/real/rcp.inc"
};
ORX_API const double orx_tef_core_logl_table_256[256][2] __attribute__((aligned(64))) = {
#include "_heap/real/logl.inc"
};
extern "C" ORX_API __attribute__((alias("orx_tef_core_logl_table_256")))
const double orx_tef_core_log_table_256[256][2];

ORX_ISA_BEGIN(orx::tef)
namespace {

// f^2 (1/3 - f/4 + ... +- f^(terms - 1)/(terms + 2)).
template <int terms>
long double tail_of_series(long double f) {
  long double sum = 0;
  for (int n = terms + 2; n >= 3; --n) sum = (n % 2 ? 1.0L : -1.0L) / n + f * sum;
  return sum * f * f;
}

// ln(1 + f) = f - f^2/2 + f^3/3 ...; the square has to be exact.
template <int terms>
Sum series(Sum f) {
  const Sum square = exact_product(f.high, f.high);
  const Sum s = fast_sum(f.high, -square.high / 2);
  const long double tail = f.high * tail_of_series<terms>(f.high);
  return fast_sum(s.high, s.low + (f.low - f.high * f.low - square.low / 2 + tail));
}
constexpr int kTermsNearOne = 17;  // |f| <= 1/16: the first left out is 2^-79 of f
constexpr int kTermsReduced = 7;   // |f| < 2^-8.6: 2^-81

constexpr uint32_t kNearOne = 0x3FFEF800, kNearOneLength = 36864;  // 0.96875 to 1.0625

Sum of_key(Sum x, ExtendedBits b) {
  int k = b.field() - kExtendedBias;
  const Sum m = scaled(x, power_of_two(-k));
  const unsigned i = static_cast<unsigned>(b.significand >> 55) & 255;
  const long double r = orx_tef_core_double_rcp_table_256[i];
  const Sum half = halves(m.high);
  const Sum f = fast_sum(half.high * r - 1, half.low * r);
  const Sum log = series<kTermsReduced>({f.high, f.low + m.low * r});
  const double* row = orx_tef_core_logl_table_256[i];
  const Sum s = fast_sum(k * kLn2High + row[1], log.high);
  return fast_sum(s.high, s.low + (log.low + row[0] + k * kLn2Low));
}

uint32_t key_of(ExtendedBits b) {
  return uint32_t{b.exponent} << 16 | static_cast<uint32_t>(b.significand >> 48);
}

}  // namespace

Sum log_of(Sum x) {
  const ExtendedBits b = bits_of(x.high);
  if (key_of(b) - kNearOne <= kNearOneLength) return series<kTermsNearOne>(fast_sum(x.high - 1, x.low));
  return of_key(x, b);
}

Sum log1p_of(Sum x) {
  if (__builtin_fabsl(x.high) < 0x1p-5L) return series<kTermsNearOne>(x);
  const Sum s = exact_sum(x.high, 1);
  return log_of(fast_sum(s.high, s.low + x.low));
}

ORX_ISA_END

using namespace orx::tef;

ORX_API long double orx_tef_kernel_logl_scalar(long double x) {
  const ExtendedBits b = bits_of(x);
  if (b.exponent >= kExtendedSpecial || b.significand == 0) {
    if (x == 0) return -1 / (x * x);
    if (is_nan(x) || !b.negative()) return x + x;
    return extended_invalid();
  }
  if (b.field() != 0) return log_of({x, 0}).value();
  const Sum log = log_of({x * 0x1p75L, 0});
  return (log + Sum{-75 * kLn2High, -75 * kLn2Low}).value();
}

ORX_API long double orx_tef_kernel_log1pl_scalar(long double x) {
  if (is_nan(x)) return x + x;
  if (x <= -1) return x == -1 ? -1 / unfolded(0) : extended_invalid();
  if (!is_finite(x)) return x;
  if (__builtin_fabsl(x) < 0x1p-66L) return tiny_result(x);
  return log1p_of({x, 0}).value();
}
