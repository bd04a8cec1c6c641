// e^x of the extended type and the functions made of it: x = (256 k + j) ln 2/256 + r, e^x = 2^k 2^(j/256) e^r
// (P. T. P. Tang, "Table-driven implementation of the exponential function in IEEE floating-point arithmetic", ACM
// TOMS 15, 1989). The hyperbolic functions take e^x and e^-x from one reduction, from rows j and 256 - j.
#include "_heap/real/extended.hpp"
#include "orx/base/api.hpp"
#include "orx/tef_scalar.h"

ORX_API const double orx_tef_core_expl_table_256[257][2] __attribute__((aligned(64))) = {
#include "_heap/real/expl.inc"
};

ORX_ISA_BEGIN(orx::tef)
namespace {

struct Reduction {
  int k, j;
  long double r;
};
Reduction reduction(Sum x) {
  const int n = static_cast<int>(__builtin_lrintl(x.high * k256ByLn2));
  return {n >> 8, n & 255, (x.high - n * kLn2By256High) - (n * kLn2By256Low - x.low)};
}

// e^r - 1 = even + odd, |r| <= 2^-9.5: the first terms left out are 2^-79.
struct Parts {
  long double even, odd;
};
Parts series(long double r) {
  const long double z = r * r;
  return {z * (1 / 2.0L + z * (1 / 24.0L + z * (1 / 720.0L))), r + r * z * (1 / 6.0L + z * (1 / 120.0L))};
}

// 2^(j/256) (1 + rest).
Sum from_row(int j, long double rest) {
  const double* row = orx_tef_core_expl_table_256[j];
  return fast_sum(row[0], row[1] + (static_cast<long double>(row[0]) + row[1]) * rest);
}

constexpr long double kSmall = 0x1p-3L;  // below it e^x and e^-x would cancel

// sinh x and cosh x, |x| < 1/8: the first terms left out are 2^-82 of them.
SinhCosh by_series(long double x) {
  const Sum square = exact_product(x, x);
  const long double z = square.high;
  long double sinh = 0, cosh = 0;
  constexpr long double inverse_factorials[] = {1 / 6.0L,         1 / 24.0L,         1 / 120.0L,
                                                1 / 720.0L,       1 / 5040.0L,       1 / 40320.0L,
                                                1 / 362880.0L,    1 / 3628800.0L,    1 / 39916800.0L,
                                                1 / 479001600.0L, 1 / 6227020800.0L, 1 / 87178291200.0L};
  for (int i = 10; i >= 0; i -= 2) {
    sinh = inverse_factorials[i] + z * sinh;
    cosh = inverse_factorials[i + 1] + z * cosh;
  }
  const Sum c = fast_sum(1, z / 2);
  return {fast_sum(x, x * z * sinh), fast_sum(c.high, c.low + (square.low / 2 + z * z * cosh)), 0};
}

}  // namespace

Scaled exp_of(Sum x) {
  const Reduction at = reduction(x);
  const Parts p = series(at.r);
  return {from_row(at.j, p.even + p.odd), at.k};
}

SinhCosh sinh_cosh_of(long double x) {
  const long double size = __builtin_fabsl(x);
  SinhCosh y;
  if (size < kSmall) {
    y = by_series(size);
  } else {
    const Reduction at = reduction({size, 0});
    const Parts p = series(at.r);
    const Sum up = from_row(at.j, p.even + p.odd);
    y = {up, up, at.k - 1};
    if (at.k < 64) {
      const Sum down = scaled(from_row(256 - at.j, p.even - p.odd), power_of_two(-2 * at.k - 1));
      y.sinh = up - down;
      y.cosh = up + down;
    }
  }
  if (is_negative(x)) y.sinh = -y.sinh;
  return y;
}

// Where it is normal rounding comes first; a denormal one is rounded at its own last place, as the sum with a number that
// ends there, too. Denormal results are positive: they are e^x.
long double Scaled::rounded() const {
  constexpr int least = 1 - kExtendedBias, most = kExtendedBias;
  const int last = bits_of(value.high).field() - kExtendedBias + exponent;
  if (last > most) return unfolded(with_sign_of(std::numeric_limits<long double>::max(), value.high)) * 2;
  if (last >= least) return value.value() * power_of_two(exponent - last) * power_of_two(last);
  static_cast<void>(unfolded(unfolded(power_of_two(least)) * power_of_two(least)));
  const int down = least - exponent;
  if (down > 64) return 0;
  const Sum s = fast_sum(power_of_two(down), value.high);
  return (unfolded(s.high + (s.low + value.low)) - power_of_two(down)) * power_of_two(-down) *
         power_of_two(least);
}

ORX_ISA_END

using namespace orx::tef;

namespace {

// Where |x| is so large that the result is beyond the range in any case.
constexpr int kTinyField = kExtendedBias - 34;  // x^2 is nothing beside 1
constexpr long double kHuge = 0x1p14L;

long double limited(long double x) { return __builtin_fabsl(x) < kHuge ? x : with_sign_of(kHuge, x); }

}  // namespace

ORX_API long double orx_tef_kernel_expl_scalar(long double x) {
  const int field = bits_of(x).field();
  if (field == kExtendedSpecial) return is_infinite(x) && is_negative(x) ? 0 : x + x;
  if (field < kExtendedBias - 67) return 1 + x;
  return exp_of({limited(x), 0}).rounded();
}

ORX_API void orx_tef_kernel_sinhcoshl_scalar(long double x, long double* sinh, long double* cosh) {
  const int field = bits_of(x).field();
  if (field == kExtendedSpecial) {
    *sinh = x + x;
    *cosh = is_nan(x) ? x + x : __builtin_fabsl(x);
  } else if (field < kTinyField) {
    *sinh = tiny_result(x);
    *cosh = next_to_one(x);
  } else {
    const SinhCosh y = sinh_cosh_of(limited(x));
    *sinh = Scaled{y.sinh, y.exponent}.rounded();
    *cosh = Scaled{y.cosh, y.exponent}.rounded();
  }
}

ORX_API long double orx_tef_kernel_sinhl_scalar(long double x) {
  return both<orx_tef_kernel_sinhcoshl_scalar>(x).first;
}

ORX_API long double orx_tef_kernel_coshl_scalar(long double x) {
  return bits_of(x).field() < kTinyField ? next_to_one(x) : both<orx_tef_kernel_sinhcoshl_scalar>(x).second;
}

ORX_API long double orx_tef_kernel_tanhl_scalar(long double x) {
  const int field = bits_of(x).field();
  if (is_nan(x)) return x + x;
  if (field < kTinyField) return tiny_result(x);
  if (field > kExtendedBias + 5) return with_sign_of(is_infinite(x) ? 1 : 1 - unfolded(0x1p-70L), x);
  const SinhCosh y = sinh_cosh_of(x);
  return (y.sinh / y.cosh).value();
}
