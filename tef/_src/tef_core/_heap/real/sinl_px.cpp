// Sine, cosine and tangent of the extended type: reduced to a quadrant, then to a sum of a point j/32 with tabulated sine and
// cosine and a short rest (S. Gal, B. Bachelis, "An accurate elementary mathematical library for the IEEE floating point
// standard", ACM TOMS 17, 1991).
#include "_heap/real/extended.hpp"
#include "orx/base/api.hpp"
#include "orx/tef_scalar.h"

ORX_ISA_BEGIN(orx::tef)

alignas(64) const double kSinCosPoints[27][4] = {
#include "_heap/real/sinl.inc"
};

namespace {

// Below this the products of the quotient with the parts of pi/2 are exact.
constexpr long double kLarge = 0x1p20L;

// x - q pi/2; q modulo 4.
struct Reduced {
  Sum angle;
  int quadrant;
};
Reduced reduced(Sum x) {
  if (__builtin_fabsl(x.high) < 0.785L) return {x, 0};
  if (__builtin_fabsl(x.high) >= kLarge) {
    long double y[2];
    const int octant = orx_tef_kernel_reduce_pi04l(x.high, y);
    // A low part that does not stay in the quadrant belongs to a number that has no accuracy left.
    return {Sum{y[0], y[1]} + (__builtin_fabsl(x.low) < 0x1p-7L ? x.low : 0), octant / 2};
  }
  const int q = static_cast<int>(__builtin_lrintl(x.high * kTwoByPi));
  const Sum rest = exact_sum(x.high - q * kHalfPiFirst, -q * kHalfPiSecond);
  return {fast_sum(rest.high, rest.low - q * kHalfPiThird + x.low), q & 3};
}

// sin(c + d) = sin c + d + (cos c - 1) d + cos c (sin d - d) + sin c (cos d - 1), where all that is rounded is small beside
// the first; cos likewise. The series leave out terms of 2^-82.
SinCos in_octant(Sum x) {
  const bool negative = is_negative(x.high);
  if (negative) x = -x;
  const int j = static_cast<int>(__builtin_lrintl(x.high * 32));
  const double* point = kSinCosPoints[j];
  const Sum sin_point = {point[0], point[1]}, cos_point = {point[2], point[3]};
  const long double sin = sin_point.value(), cos = cos_point.value();
  const long double d = x.high - j / 32.0L, z = d * d;
  const long double sin_rest =
      d * z * (-1 / 6.0L + z * (1 / 120.0L + z * (-1 / 5040.0L + z * (1 / 362880.0L))));
  const long double cos_rest = z * (-1 / 2.0L + z * (1 / 24.0L + z * (-1 / 720.0L + z * (1 / 40320.0L))));
  const Sum s = j ? fast_sum(sin_point.high, d) : Sum{d, 0};
  const Sum product = exact_product(sin_point.high, d), c = fast_sum(cos_point.high, -product.high);
  SinCos y = {fast_sum(s.high, s.low + (sin_point.low + (cos_point.high - 1 + cos_point.low) * d +
                                        cos * (sin_rest + x.low) + sin * cos_rest)),
              fast_sum(c.high, c.low + (cos_point.low - product.low - sin_point.low * d -
                                        sin * (sin_rest + x.low) + cos * cos_rest))};
  if (negative) y.sin = -y.sin;
  return y;
}

}  // namespace

SinCos sin_cos_of(Sum x) {
  const Reduced at = reduced(x);
  const SinCos y = in_octant(at.angle);
  switch (at.quadrant) {
    case 0:
      return y;
    case 1:
      return {y.cos, -y.sin};
    case 2:
      return {-y.sin, -y.cos};
    default:
      return {-y.cos, y.sin};
  }
}

ORX_ISA_END

using namespace orx::tef;

namespace {

constexpr int kTinyField = kExtendedBias - 35;  // x^2 is nothing beside 1

}  // namespace

ORX_API void orx_tef_kernel_sincosl_scalar(long double x, long double* sin, long double* cos) {
  const int field = bits_of(x).field();
  if (field == kExtendedSpecial) {
    *sin = *cos = x - x;
  } else if (field < kTinyField) {
    *sin = tiny_result(x);
    *cos = next_to_one(x);
  } else {
    const SinCos y = sin_cos_of({x, 0});
    *sin = y.sin.value();
    *cos = y.cos.value();
  }
}

ORX_API long double orx_tef_kernel_sinl_scalar(long double x) {
  return both<orx_tef_kernel_sincosl_scalar>(x).first;
}

ORX_API long double orx_tef_kernel_cosl_scalar(long double x) {
  return bits_of(x).field() < kTinyField ? next_to_one(x) : both<orx_tef_kernel_sincosl_scalar>(x).second;
}

ORX_API long double orx_tef_kernel_tanl_scalar(long double x) {
  const int field = bits_of(x).field();
  if (field == kExtendedSpecial) return x - x;
  if (field < kTinyField) return tiny_result(x);
  const SinCos y = sin_cos_of({x, 0});
  return (y.sin / y.cos).value();
}
