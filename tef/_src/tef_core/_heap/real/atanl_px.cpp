// The angle of a point, and the inverse trigonometric functions of the extended type. With c = j/128 next to y/x,
// atan(y/x) = atan c + atan((y - c x)/(x + c y)), where the numerator and the denominator are exact as sums. The arcsine is
// the angle of the point (sqrt(1 - x^2), x) of the circle.
#include "_heap/real/extended.hpp"
#include "orx/base/api.hpp"
#include "orx/tef_scalar.h"

ORX_API const double orx_tef_core_atanl_table_128[129][2] __attribute__((aligned(64))) = {
#include "_heap/real/atanl.inc"
};

ORX_ISA_BEGIN(orx::tef)
namespace {

// atan(t) - t over t, |t| <= 2^-8: the first term left out is 2^-83.
long double tail_of_series(long double t) {
  const long double z = t * t;
  return z * (-1 / 3.0L + z * (1 / 5.0L + z * (-1 / 7.0L + z * (1 / 9.0L))));
}

// The angle of (x, y), 0 <= y <= x.
Sum of_lower_octant(Sum y, Sum x) {
  const int j = static_cast<int>(__builtin_lrintl(y.high / x.high * 128));
  Sum t;
  if (j == 0) {
    t = y / x;
  } else {
    const long double c = j / 128.0L;
    t = (y - product_by_short(x, c)) / (x + product_by_short(y, c));
  }
  const double* row = orx_tef_core_atanl_table_128[j];
  const Sum s = fast_sum(row[0], t.high);
  return fast_sum(s.high, s.low + (row[1] + t.low + t.high * tail_of_series(t.high)));
}

}  // namespace

Sum angle_of(Sum y, Sum x) {
  return y.high <= x.high ? of_lower_octant(y, x) : kHalfPi - of_lower_octant(x, y);
}

namespace {

// sqrt(1 - x^2).
Sum leg(long double x) {
  const Sum square = exact_product(x, x);
  return square_root(exact_sum(1, -square.high) + -square.low);
}

// Places by which one is larger than the other that are as good as an infinity.
constexpr int kFar = 70;

}  // namespace

Sum argument(long double y, long double x) {
  const long double height = __builtin_fabsl(y), width = __builtin_fabsl(x);
  const int rise = bits_of(height).field(), run = bits_of(width).field();
  const bool back = is_negative(x);
  Sum angle = {0, 0};
  if (width == 0 || rise > run + kFar) {
    angle = height == 0 ? angle : kHalfPi - Sum{width == 0 ? 0 : 0x1p-70L, 0};
  } else if (run > rise + kFar) {
    angle = back || height == 0 ? Sum{height == 0 ? 0 : 0x1p-70L, 0} : Sum{height, 0} / Sum{width, 0};
  } else {
    const long double scale = power_of_two(kExtendedBias - (rise > run ? rise : run));
    angle = angle_of({height * scale, 0}, {width * scale, 0});
  }
  if (back) angle = kPi - angle;
  return is_negative(y) ? -angle : angle;
}

ORX_ISA_END

using namespace orx::tef;

ORX_API long double orx_tef_kernel_atan2l_scalar(long double y, long double x) {
  if (is_nan(x) || is_nan(y)) return x + y;
  if (is_infinite(x) || is_infinite(y)) {
    x = with_sign_of(is_infinite(x), x);
    y = with_sign_of(is_infinite(y), y);
  }
  // Only here can the quotient leave the range.
  if (!is_negative(x) && x != 0 && bits_of(x).field() > bits_of(y).field() + kFar) return y / x;
  return argument(y, x).value();
}

ORX_API long double orx_tef_kernel_atanl_scalar(long double x) {
  if (is_nan(x)) return x + x;
  return bits_of(x).field() < kExtendedBias - 34 ? tiny_result(x) : orx_tef_kernel_atan2l_scalar(x, 1);
}

ORX_API long double orx_tef_kernel_asinl_scalar(long double x) {
  const long double size = __builtin_fabsl(x);
  if (is_nan(x)) return x + x;
  if (size > 1) return extended_invalid();
  if (bits_of(x).field() < kExtendedBias - 34) return tiny_result(x);
  return with_sign_of(angle_of({size, 0}, leg(x)).value(), x);
}

ORX_API long double orx_tef_kernel_acosl_scalar(long double x) {
  const long double size = __builtin_fabsl(x);
  if (is_nan(x)) return x + x;
  if (size > 1) return extended_invalid();
  if (bits_of(x).field() < kExtendedBias - 70) return (kHalfPi - Sum{x, 0}).value();
  const Sum angle = angle_of(leg(x), {size, 0});
  return (is_negative(x) ? kPi - angle : angle).value();
}
