// Reduction of one argument by pi/2, in integers: the significand times those digits of 1/(2 pi) that give the fraction of
// a turn (M. Payne, R. Hanek, "Radian reduction for trigonometric functions", ACM SIGNUM Newsletter 18, 1983). No
// number of 64 significant bits comes nearer to a multiple of pi/2 than some 2^-80 of itself, so that 256 digits leave
// more than both parts of the result can hold.
#include "orx/base/api.hpp"
#include "orx/base/bits.hpp"
#include "orx/tef_scalar.h"

namespace {

constexpr int kZeros = 64;
const uint32_t kTurnDigits[] = {
#include "_heap/real/reduce_px.inc"
};

// Unsigned integers of n words of 32 bits, the lowest first.
template <int n>
struct Wide {
  uint32_t word[n];

  bool bit(int i) const { return word[i / 32] >> i % 32 & 1; }
  int leading_zeros() const {
    int i = n - 1;
    while (i > 0 && !word[i]) --i;
    return 32 * (n - 1 - i) + (word[i] ? __builtin_clz(word[i]) : 32);
  }
  // The highest m words of the number shifted to the left by `shift` bits.
  template <int m>
  Wide<m> from_bit(int shift) const {
    Wide<m> result{};
    const auto at = [&](int i) -> uint64_t { return i >= 0 ? word[i] : 0; };
    for (int i = 0; i < m; ++i) {
      const int j = n - m + i - shift / 32;
      result.word[i] = static_cast<uint32_t>((at(j) << 32 | at(j - 1)) << shift % 32 >> 32);
    }
    return result;
  }
  void negate() {
    uint64_t carry = 1;
    for (uint32_t& w : word) {
      carry += ~w;
      w = static_cast<uint32_t>(carry);
      carry >>= 32;
    }
  }
};

template <int n, int m>
Wide<n + m> product(const Wide<n>& a, const Wide<m>& b) {
  Wide<n + m> result{};
  for (int i = 0; i < n; ++i) {
    uint64_t carry = 0;
    for (int j = 0; j < m; ++j) {
      carry += uint64_t{a.word[i]} * b.word[j] + result.word[i + j];
      result.word[i + j] = static_cast<uint32_t>(carry);
      carry >>= 32;
    }
    result.word[i + m] = static_cast<uint32_t>(carry);
  }
  return result;
}

// A number of 64 significant bits: significand times 2^exponent.
struct Parts {
  uint64_t significand;
  int exponent;
  bool negative;
};
Parts parts_of(double x) {
  const uint64_t bits = orx::bit_cast<uint64_t>(x);
  constexpr uint64_t hidden_bit = uint64_t{1} << 52;
  const int field = static_cast<int>(bits >> 52 & 0x7FF);
  return {((bits & (hidden_bit - 1)) | hidden_bit) << 11, field - 1023 - 63, bits >> 63 != 0};
}
Parts parts_of(long double x) {
  struct {
    uint64_t significand;
    uint16_t exponent;
  } image;
  std::memcpy(&image, &x, 10);
  return {image.significand, (image.exponent & 0x7FFF) - 16383 - 63, image.exponent >> 15 != 0};
}

// The fraction of a turn that m 2^exponent, the exponent being -64 at least, ends in: 256 bits behind the point.
Wide<8> fraction_of_turn(uint64_t m, int exponent) {
  const int first = exponent + kZeros;
  Wide<9> digits{};
  for (int i = 0; i < 9; ++i) digits.word[8 - i] = kTurnDigits[first / 32 + i];
  const Wide<2> factor = {{static_cast<uint32_t>(m), static_cast<uint32_t>(m >> 32)}};
  const Wide<10> turns = product(digits.from_bit<8>(first % 32), factor);
  return turns.from_bit<8>(64);
}

// t 2^(-127 - shift) as a rounded sum and what it lacks.
template <class Real>
void as_sum(const Wide<4>& t, int shift, bool negative, Real y[2]) {
  Real digit[4];
  for (int i = 0; i < 4; ++i) {
    const int exponent = 32 * i - 127 - shift;
    const double unit = orx::bit_cast<double>(static_cast<uint64_t>(1023 + exponent) << 52);
    digit[i] = static_cast<Real>((negative ? -unit : unit) * t.word[i]);
  }
  const Real high = digit[3] + digit[2], low = digit[2] - (high - digit[3]);
  const Real rest = low + digit[1] + digit[0];
  y[0] = high + rest;
  y[1] = rest - (y[0] - high);
}

template <class Real>
int reduce(Real x, Real y[2]) {
  // The largest number below pi/4, or next to it from above.
  constexpr Real eighth = static_cast<Real>(0xC.90FDAA22168C235p-4L);
  if (!(x >= eighth || x <= -eighth) || x - x != 0) {
    y[0] = x - x == 0 ? x : x - x;
    y[1] = 0 * y[0];
    return 0;
  }
  const Parts p = parts_of(x);
  const Wide<8> turn = fraction_of_turn(p.significand, p.exponent);
  int quadrant = static_cast<int>(turn.word[7] >> 30);
  Wide<8> rest = turn.from_bit<8>(2);
  const bool beyond = rest.bit(255);  // half of a quadrant: the next one is nearer
  if (beyond) {
    ++quadrant;
    rest.negate();
  }
  constexpr Wide<4> quarter = {{0x80DC1CD1, 0xC4C6628B, 0x2168C234, 0xC90FDAA2}};  // pi/2, 2^-127 the unit
  const int shift = rest.leading_zeros();
  as_sum(product(rest.from_bit<4>(shift), quarter).template from_bit<4>(0), shift, beyond != p.negative, y);
  return (p.negative ? -quadrant : quadrant) & 3;
}

}  // namespace

ORX_API int orx_tef_kernel_reduce_pio2d(double x, double y[2]) { return reduce(x, y); }
ORX_API int orx_tef_kernel_reduce_pi04l(long double x, long double y[2]) { return 2 * reduce(x, y); }
