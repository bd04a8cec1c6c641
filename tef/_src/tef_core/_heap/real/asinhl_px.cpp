// The inverse hyperbolic functions of the extended type, as logarithms next to 1:
//   asinh x = ln(1 + x + x^2/(1 + sqrt(1 + x^2))),  acosh x = ln(1 + u + sqrt(u^2 + 2u)), u = x - 1,
//   atanh x = ln(1 + 2x/(1 - x))/2.
#include "_heap/real/extended.hpp"
#include "orx/base/api.hpp"
#include "orx/tef_scalar.h"

using namespace orx::tef;

namespace {

constexpr long double kLarge = 0x1p40L;  // from here on x is all there is under the root
constexpr int kTinyField = kExtendedBias - 34;

// ln(2x).
long double log_of_twice(long double x) { return (log_of({x, 0}) + Sum{kLn2High, kLn2Low}).value(); }

}  // namespace

ORX_API long double orx_tef_kernel_asinhl_scalar(long double x) {
  const long double size = __builtin_fabsl(x);
  if (!is_finite(x)) return x + x;
  if (bits_of(x).field() < kTinyField) return tiny_result(x);
  if (size > kLarge) return with_sign_of(log_of_twice(size), x);
  const Sum square = exact_product(size, size);
  const Sum u = square / (square_root(square + 1) + 1) + size;
  return with_sign_of(log1p_of(u).value(), x);
}

ORX_API long double orx_tef_kernel_acoshl_scalar(long double x) {
  if (is_nan(x)) return x + x;
  if (x < 1) return extended_invalid();
  if (x > kLarge) return is_infinite(x) ? x : log_of_twice(x);
  const Sum u = exact_sum(x, -1);
  return log1p_of(square_root(u * (u + 2)) + u).value();
}

ORX_API long double orx_tef_kernel_atanhl_scalar(long double x) {
  const long double size = __builtin_fabsl(x);
  if (is_nan(x)) return x + x;
  if (size >= 1) return size == 1 ? x / unfolded(0) : extended_invalid();
  if (bits_of(x).field() < kTinyField) return tiny_result(x);
  return with_sign_of(log1p_of(Sum{2 * size, 0} / exact_sum(1, -size)).value() / 2, x);
}
