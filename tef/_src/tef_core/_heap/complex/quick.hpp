// What complex functions of doubles need of the extended functions: arguments that come from doubles, results right to 2^-60
// of themselves. The methods and the tables are those of the sums, without their low parts.
#pragma once
#include "_heap/complex/complex.hpp"
#include "orx/tef_scalar.h"

ORX_ISA_BEGIN(orx::tef)
namespace quick {

// 2^n in a way that leaves the processor's pipeline alone: an image that was written in parts cannot be read at once.
inline long double power_of_two(int n) {
  if (__builtin_expect(n < -1000 || n > 1000, 0)) return tef::power_of_two(n);
  double power;
  _mm_store_sd(&power, _mm_castsi128_pd(_mm_slli_epi64(_mm_cvtsi32_si128(n + 1023), 52)));
  return power;
}

inline bool is_finite(long double x) {
  return __builtin_islessequal(__builtin_fabsl(x), std::numeric_limits<long double>::max());
}
inline bool all_finite(Extended z) { return is_finite(z.re) && is_finite(z.im); }

constexpr float kSigns[2] = {1, -1};

// x finite.
struct Turn {
  long double sin, cos;
};
inline Turn sin_cos(long double x) {
  constexpr long double large = 0x1p20L;  // from here on products with the parts of pi/2 are not exact
  long double rest;
  int quadrant;
  if (__builtin_expect(__builtin_fabsl(x) < large, 1)) {
    quadrant = static_cast<int>(__builtin_lrintl(x * kTwoByPi));
    rest = x - quadrant * kHalfPiFirst - quadrant * kHalfPiSecond - quadrant * kHalfPiThird;
  } else {
    long double parts[2];
    quadrant = orx_tef_kernel_reduce_pi04l(x, parts) / 2;
    rest = parts[0];
  }
  const long double size = __builtin_fabsl(rest);
  const int j = static_cast<int>(__builtin_lrintl(size * 32));
  const double* point = kSinCosPoints[j];
  const long double d = size - j * 0x1p-5L, z = d * d;
  const long double sin_d =
      d + d * z * (-1 / 6.0L + z * (1 / 120.0L + z * (-1 / 5040.0L + z * (1 / 362880.0L))));
  const long double cos_d = z * (-1 / 2.0L + z * (1 / 24.0L + z * (-1 / 720.0L + z * (1 / 40320.0L))));
  const long double sin_c = static_cast<long double>(point[0]) + point[1];
  const long double cos_c = static_cast<long double>(point[2]) + point[3];
  const long double sin = (sin_c + (cos_c * sin_d + sin_c * cos_d)) * kSigns[is_negative(rest)];
  const long double cos = cos_c + (cos_c * cos_d - sin_c * sin_d);
  const bool odd = quadrant & 1;
  return {(odd ? cos : sin) * kSigns[quadrant >> 1 & 1], (odd ? sin : cos) * kSigns[(quadrant + 1) >> 1 & 1]};
}

// x = (256 k + j) ln 2/256 + r; e^r - 1 is even + odd.
struct Reduction {
  int k, j;
  long double even, odd;
};
inline Reduction reduction(long double x) {
  const int n = static_cast<int>(__builtin_lrintl(x * k256ByLn2));
  const long double r = x - n * kLn2By256High - n * kLn2By256Low, z = r * r;
  return {n >> 8, n & 255, z * (1 / 2.0L + z * (1 / 24.0L)), r + r * z * (1 / 6.0L + z * (1 / 120.0L))};
}
inline long double from_row(int j, long double rest) {
  const double* row = orx_tef_core_expl_table_256[j];
  const long double power = static_cast<long double>(row[0]) + row[1];
  return power + power * rest;
}

// Where the magnitude is larger the results in double are as if it were this, also times a denormal number.
constexpr long double kMost = 1600;
inline long double limited(long double x) {
  return __builtin_expect(__builtin_fabsl(x) <= kMost, 1) ? x : with_sign_of(kMost, x);
}

// e^x, |x| <= kMost.
inline long double exp(long double x) {
  const Reduction at = reduction(x);
  return from_row(at.j, at.even + at.odd) * power_of_two(at.k);
}

struct Hyperbola {
  long double sinh, cosh;
};
// |x| <= kMost.
inline Hyperbola sinh_cosh(long double x) {
  constexpr long double small = 0x1p-3L;  // below it e^x and e^-x would cancel
  const long double size = __builtin_fabsl(x);
  const Reduction at = reduction(size);
  const long double up = from_row(at.j, at.even + at.odd) * power_of_two(at.k - 1);
  const long double down = from_row(256 - at.j, at.even - at.odd) * power_of_two(-at.k - 2);
  if (size >= small) return {(up - down) * kSigns[x < 0], up + down};
  const long double z = x * x;
  return {
      x + x * z *
              (1 / 6.0L + z * (1 / 120.0L + z * (1 / 5040.0L + z * (1 / 362880.0L + z * (1 / 39916800.0L))))),
      up + down};
}

// ln(2^k m), 2^k m not next to 1.
inline long double ln(long double x) {
  const ExtendedBits b = bits_of(x);
  const int k = b.field() - kExtendedBias;
  const unsigned i = static_cast<unsigned>(b.significand >> 55) & 255;
  const double* row = orx_tef_core_logl_table_256[i];
  const double r = orx_tef_core_double_rcp_table_256[i];
  const long double scale = power_of_two(-k);
  long double f = x * (scale * r) - 1;
  if (k == 0 || k == -1) {
    // The product was rounded, which is too much where the logarithm is small. r has 11 bits: with a double it is exact.
    const double high = static_cast<double>(x * scale);
    f = (static_cast<long double>(high) * r - 1) + (x * scale - high) * r;
  }
  const long double tail =
      f * f *
      (-1 / 2.0L + f * (1 / 3.0L + f * (-1 / 4.0L + f * (1 / 5.0L + f * (-1 / 6.0L + f * (1 / 7.0L))))));
  return k * kLn2High + row[1] + (f + (tail + (row[0] + k * kLn2Low)));
}

// ln(1 + x), x >= 0.
inline long double log1p(long double x) {
  const long double with_one = 1 + x;
  if (x >= 0x1p-5L) return ln(with_one) + (x - (with_one - 1)) / with_one;
  long double sum = 0;
  for (int n = 14; n >= 2; --n) sum = (n % 2 ? 1.0L : -1.0L) / n + x * sum;
  return x + x * x * sum;
}

// The angle in [-pi, pi] of (x, y), finite; zeros count by their sign.
inline long double argument(long double y, long double x) {
  const long double height = __builtin_fabsl(y), width = __builtin_fabsl(x);
  const bool steep = height > width;
  const long double low = steep ? width : height, high = steep ? height : width;
  const int j = high == 0 ? 0 : static_cast<int>(__builtin_lrintl(low / high * 128));
  const long double c = j * 0x1p-7L;
  const long double t = high == 0 ? 0 : (low - c * high) / (high + c * low), z = t * t;
  const double* row = orx_tef_core_atanl_table_128[j];
  const long double rest =
      t + (row[1] + t * z * (-1 / 3.0L + z * (1 / 5.0L + z * (-1 / 7.0L + z * (1 / 9.0L)))));
  long double angle = row[0] + rest;
  angle = steep ? kHalfPi.high - angle : angle;
  angle = is_negative(x) ? kPi.high - angle : angle;
  return angle * kSigns[is_negative(y)];
}

}  // namespace quick
ORX_ISA_END
