// The x87 type of 80 bits, and sums of two of it: what the scalar functions compute in. Their results are right to some 70
// bits before the last rounding, so that what is left of an error of half a unit comes from there; x^y by logarithm and
// exponential lives on them too.
//
// Sums and products are exact by T. Dekker, "A floating-point technique for extending the available precision" (1971) and
// O. Moller and D. Knuth's two-sum. All of it counts on the control word: round to nearest, 64 bits.
#pragma once
#include <cstdint>
#include <cstring>
#include <limits>

#include "orx/base/simd/isa.hpp"

ORX_ISA_BEGIN(orx::tef)

// high + low, where high is the rounded sum, or next to it.
struct Sum {
  long double high, low;

  long double value() const { return high + low; }
};

inline Sum operator-(Sum a) { return {-a.high, -a.low}; }

// ---- the image
struct ExtendedBits {
  uint64_t significand;
  uint16_t exponent;  // biased, under the sign

  int field() const { return exponent & 0x7FFF; }
  bool negative() const { return exponent >> 15 != 0; }
};
constexpr int kExtendedBias = 16383, kExtendedSpecial = 0x7FFF;

inline ExtendedBits bits_of(long double x) {
  ExtendedBits b;
  std::memcpy(&b, &x, 10);
  return b;
}
inline long double of_bits(ExtendedBits b) {
  long double x = 0;
  std::memcpy(&x, &b, 10);
  return x;
}

inline bool is_nan(long double x) { return __builtin_isunordered(x, x); }
inline bool is_finite(long double x) { return bits_of(x).field() != kExtendedSpecial; }
inline bool is_infinite(long double x) {
  const ExtendedBits b = bits_of(x);
  return b.field() == kExtendedSpecial && b.significand << 1 == 0;
}
inline bool is_negative(long double x) { return bits_of(x).negative(); }
inline long double with_sign_of(long double size, long double sign) {
  return is_negative(sign) ? -__builtin_fabsl(size) : __builtin_fabsl(size);
}
inline long double square_root(long double x) {
  asm("fsqrt" : "+t"(x));
  return x;
}
// 2^n, a normal number.
inline long double power_of_two(int n) {
  return of_bits({uint64_t{1} << 63, static_cast<uint16_t>(n + kExtendedBias)});
}

// A value that the compiler cannot compute with in advance.
inline long double unfolded(long double x) {
  asm volatile("" : "+t"(x));
  return x;
}
// A NaN, and the exception.
inline long double extended_invalid() {
  const long double zero = unfolded(0);
  return zero / zero;
}
// For functions that are 1 where x is tiny: inexact if x is not 0.
inline long double next_to_one(long double x) { return x == 0 ? x + 1 : 1 - unfolded(0x1p-70L); }
// For functions that are x where x is tiny: x, inexact if it is not 0, underflown if it is denormal.
inline long double tiny_result(long double x) {
  const long double product = x * 0x1.0000000000000002p0L;
  asm volatile("" : : "t"(product));
  return x;
}

// What a routine with two results gives.
struct Both {
  long double first, second;
};
template <void routine(long double, long double*, long double*)>
inline Both both(long double x) {
  Both y;
  routine(x, &y.first, &y.second);
  return y;
}

// ---- exact sums and products
// |a| >= |b|, or a is 0.
inline Sum fast_sum(long double a, long double b) {
  const long double high = a + b;
  return {high, b - (high - a)};
}
inline Sum exact_sum(long double a, long double b) {
  const long double high = a + b, from_b = high - a;
  return {high, (a - (high - from_b)) + (b - from_b)};
}
// The upper 32 bits and the others.
inline Sum halves(long double x) {
  const long double scaled = x * 0x100000001p0L;
  const long double high = scaled - (scaled - x);
  return {high, x - high};
}
inline Sum exact_product(long double a, long double b) {
  const long double high = a * b;
  const Sum x = halves(a), y = halves(b);
  return {high, ((x.high * y.high - high) + x.high * y.low + x.low * y.high) + x.low * y.low};
}
// a short b: 32 bits at most.
inline Sum product_by_short(Sum x, long double b) {
  const Sum half = halves(x.high);
  const Sum s = fast_sum(half.high * b, half.low * b);
  return {s.high, s.low + x.low * b};
}

inline Sum operator+(Sum a, long double b) {
  const Sum s = exact_sum(a.high, b);
  return fast_sum(s.high, s.low + a.low);
}
inline Sum operator+(Sum a, Sum b) {
  const Sum s = exact_sum(a.high, b.high);
  return fast_sum(s.high, s.low + (a.low + b.low));
}
inline Sum operator-(Sum a, Sum b) { return a + -b; }
inline Sum operator*(Sum a, Sum b) {
  const Sum p = exact_product(a.high, b.high);
  return fast_sum(p.high, p.low + (a.high * b.low + a.low * b.high));
}
inline Sum operator/(Sum a, Sum b) {
  const long double quotient = a.high / b.high;
  const Sum p = exact_product(quotient, b.high);
  return fast_sum(quotient, ((a.high - p.high) - p.low + a.low - quotient * b.low) / b.high);
}
inline Sum square_root(Sum x) {
  const long double root = square_root(x.high);
  if (root == 0) return {root, 0};
  const Sum p = exact_product(root, root);
  return fast_sum(root, ((x.high - p.high) - p.low + x.low) / (2 * root));
}
inline Sum scaled(Sum x, long double power) { return {x.high * power, x.low * power}; }
inline Sum magnitude(Sum x) { return is_negative(x.high) ? -x : x; }

// ---- constants: extended.sollya
constexpr long double kLn2High = 0x1.62e42fefa39fp-1L, kLn2Low = -0x1.950d871319ff0342p-54L;
constexpr long double kLn2By256High = 0x1.62e42fefa4p-9L, kLn2By256Low = -0x1.8432a1b0e2633fep-51L;
constexpr long double k256ByLn2 = 0x1.71547652b82fe178p8L;
constexpr long double kHalfPiFirst = 0x1.921fb54442cp0L, kHalfPiSecond = 0x1.18469898cc4p-44L,
                      kHalfPiThird = 0x1.1701b839a252049cp-88L;
constexpr Sum kHalfPi = {0x1.921fb54442d1846ap0L, -0x1.d9cceba3f91f1976p-66L};
constexpr Sum kPi = {2 * kHalfPi.high, 2 * kHalfPi.low};
constexpr long double kTwoByPi = 0x1.45f306dc9c882a54p-1L;
constexpr long double kLog10E = 0x1.bcb7b1526e50e32ap-2L;

// ---- the functions, as sums
// The sums that go in are finite and their `high` is normal, or 0; those that come out are good to 2^-70 of themselves.

// ln x, x > 0.
Sum log_of(Sum x);
// ln(1 + x), x > -1.
Sum log1p_of(Sum x);

// value 2^exponent, value in [1/2, 2].
struct Scaled {
  Sum value;
  int exponent;

  // Rounded once, also where it is denormal; beyond the range it overflows or underflows.
  long double rounded() const;
};
// e^x, |x| < 2^15.
Scaled exp_of(Sum x);
// (sinh x, cosh x) / 2^exponent, |x| < 2^15.
struct SinhCosh {
  Sum sinh, cosh;
  int exponent;
};
SinhCosh sinh_cosh_of(long double x);

// At j/32: sine, what it lacks, cosine, what it lacks.
extern const double kSinCosPoints[27][4];
// x of any size.
struct SinCos {
  Sum sin, cos;
};
SinCos sin_cos_of(Sum x);

// The angle in [0, pi/2] of the point (x, y), neither negative, not both 0, of one scale: neither's square, nor that of the
// smaller one's quotient by the larger, leaves the range.
Sum angle_of(Sum y, Sum x);
// The angle in [-pi, pi] of (x, y), which are finite; zeros count by their sign. Where x > 0 and y/x is next to 0, it
// must be in the range.
Sum argument(long double y, long double x);

ORX_ISA_END
