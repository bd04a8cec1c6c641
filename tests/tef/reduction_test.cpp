// The scalar reductions by pi/2 and the scalar tangent, judged by MPFR.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "functions.h"

namespace {

class Number {
 public:
  explicit Number(long double x = 0, mpfr_prec_t bits = 17000) {
    mpfr_init2(x_, bits);
    mpfr_set_ld(x_, x, MPFR_RNDN);
  }
  ~Number() { mpfr_clear(x_); }
  Number(const Number&) = delete;
  Number& operator=(const Number&) = delete;
  operator mpfr_ptr() { return x_; }

 private:
  mpfr_t x_;
};

struct Reduced {
  int quadrant;
  double error;  // of y[0] + y[1], as a fraction of the remainder
};
Reduced judge(long double x, long double y0, long double y1) {
  static Number quarter;
  if (mpfr_zero_p(quarter)) {
    mpfr_const_pi(quarter, MPFR_RNDN);
    mpfr_div_ui(quarter, quarter, 2, MPFR_RNDN);
  }
  Number q(x), rest(x), four(4), part;
  mpfr_div(q, q, quarter, MPFR_RNDN);
  mpfr_rint(q, q, MPFR_RNDN);
  mpfr_mul(part, q, quarter, MPFR_RNDN);
  mpfr_sub(rest, rest, part, MPFR_RNDN);
  mpfr_fmod(q, q, four, MPFR_RNDN);
  Number error(y0);
  mpfr_sub(error, error, rest, MPFR_RNDN);
  mpfr_add(error, error, Number(y1), MPFR_RNDN);
  mpfr_div(error, error, rest, MPFR_RNDN);
  return {static_cast<int>(mpfr_get_si(q, MPFR_RNDN)) & 3, std::fabs(mpfr_get_d(error, MPFR_RNDN))};
}

// Of every size, next to multiples of pi/2, and the hardest known.
std::vector<long double> arguments(int largest_exponent) {
  std::mt19937_64 random(1);
  std::vector<long double> all = {6381956970095103.0L * 0x1p797L,
                                  0x1.6ac5b262ca1ffp849L,
                                  1e22L,
                                  0.7853981633974483L,
                                  0.78539816339744839L,
                                  1,
                                  3,
                                  0x1p64L};
  for (int i = 0; i < 150; ++i) {
    const long double significand = 1 + static_cast<long double>(random() >> 1) * 0x1p-63L;
    all.push_back(
        std::ldexp(significand, static_cast<int>(random() % static_cast<unsigned>(largest_exponent))));
    const long double multiple = static_cast<long double>(random() % 1000000 + 1) * 1.57079632679489661923L;
    all.push_back(multiple * (1 + static_cast<long double>(static_cast<int>(random() % 5) - 2) * 0x1p-63L));
  }
  return all;
}

TEST(Reduction, OfDoubles) {
  for (long double wide : arguments(1023))
    for (double x : {static_cast<double>(wide), -static_cast<double>(wide)}) {
      double y[2];
      const int quadrant = orx_tef_kernel_reduce_pio2d(x, y);
      const Reduced r = judge(x, y[0], y[1]);
      EXPECT_EQ(quadrant, r.quadrant) << x;
      EXPECT_LT(r.error, 0x1p-100) << x;
      EXPECT_EQ(y[0] + y[1], y[0]) << x;
    }
}

TEST(Reduction, OfExtendedNumbers) {
  for (long double size : arguments(16384))
    for (long double x : {size, -size}) {
      long double y[2];
      const int octant = orx_tef_kernel_reduce_pi04l(x, y);
      const Reduced r = judge(x, y[0], y[1]);
      EXPECT_EQ(octant, 2 * r.quadrant) << x;
      EXPECT_LT(r.error, 0x1p-118) << x;
    }
}

// A multiple of 2^e, by 53 bits, that comes next to a multiple of pi/2: by the last denominator below 2^53 of the continued
// fraction of 2^e 2/pi, or where that is shorter by a multiple of it.
double hard_multiple(int e) {
  Number x(0, 1200), whole(0, 1200);
  mpfr_const_pi(x, MPFR_RNDN);
  mpfr_ui_div(x, 2, x, MPFR_RNDN);
  mpfr_mul_2si(x, x, e, MPFR_RNDN);
  double before = 0, last = 1;
  for (;;) {
    mpfr_frac(x, x, MPFR_RNDN);
    mpfr_ui_div(x, 1, x, MPFR_RNDN);
    mpfr_floor(whole, x);
    const double next = mpfr_get_d(whole, MPFR_RNDN) * last + before;
    if (next >= 0x1p53) return std::ldexp(std::floor((0x1p53 - 1) / last) * last, e);
    before = last;
    last = next;
  }
}

// Where reductions of large arguments lose the most, by every row of their digits.
TEST(Reduction, OfHardArgumentsOfAllExponents) {
  std::vector<double> x;
  for (int e = -52; e < 971; ++e) x.push_back(hard_multiple(e));
  const int n = static_cast<int>(x.size());
  struct {
    const char* name;
    decltype(orx_tef_kernel_dSin_ttab[0]) low, high;
    int (*judge)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);
  } const functions[] = {{"dSin", orx_tef_kernel_dSin_ttab[0], orx_tef_kernel_dSin_ttab[1], mpfr_sin},
                         {"dCos", orx_tef_kernel_dCos_ttab[0], orx_tef_kernel_dCos_ttab[1], mpfr_cos},
                         {"dTan", orx_tef_kernel_dTan_ttab[0], orx_tef_kernel_dTan_ttab[1], mpfr_tan}};
  std::vector<double> low(x.size()), high(x.size());
  Number argument(0, 100), exact(0, 100);
  for (const auto& f : functions) {
    f.low(n, x.data(), low.data());
    f.high(n, x.data(), high.data());
    for (size_t i = 0; i < x.size(); ++i) {
      mpfr_set_d(argument, x[i], MPFR_RNDN);
      f.judge(exact, argument, MPFR_RNDN);
      const auto error = [&](double got) {
        mpfr_sub_d(argument, exact, got, MPFR_RNDN);
        mpfr_div(argument, argument, exact, MPFR_RNDN);
        return std::fabs(mpfr_get_d(argument, MPFR_RNDN));
      };
      EXPECT_LT(error(low[i]), 2.2 * 0x1p-52) << f.name << ' ' << x[i];
      EXPECT_LT(error(high[i]), 0.52 * 0x1p-52) << f.name << ' ' << x[i];
    }
  }
}

TEST(Reduction, LeavesSmallArgumentsAlone) {
  for (double x : {0.0, -0.0, 0x1p-1074, -0x1p-1022, 0.5, -0x1.921fb54442d17p-1}) {
    double y[2];
    EXPECT_EQ(orx_tef_kernel_reduce_pio2d(x, y), 0);
    EXPECT_TRUE(test::same_bits(std::vector<double>{x, 0.0}, std::vector<double>{y[0], std::fabs(y[1])}))
        << x;
  }
  double y[2];
  orx_tef_kernel_reduce_pio2d(std::numeric_limits<double>::infinity(), y);
  EXPECT_TRUE(std::isnan(y[0]) && std::isnan(y[1]));
}

// The x87 control word is the caller's: 24 bits here.
class ShortX87 {
 public:
  ShortX87() {
    asm volatile("fnstcw %0" : "=m"(saved_));
    const uint16_t shorter = saved_ & ~0x300;
    asm volatile("fldcw %0" : : "m"(shorter));
  }
  ~ShortX87() { asm volatile("fldcw %0" : : "m"(saved_)); }

 private:
  uint16_t saved_;
};

TEST(ScalarTangent, IsThatOfTheHighClass) {
  std::vector<double> x = {0.0,   -0.0,     0.5, -0.5, 1.5707963267948966, 3, -1e22, 0x1.6ac5b262ca1ffp849,
                           65567, 0x1p-1074};
  std::vector<double> r(x.size()), expected(x.size());
  orx_tef_kernel_dTan_ttab[1](static_cast<int>(x.size()), x.data(), expected.data());
  const ShortX87 guard;
  for (int i = 0; i < static_cast<int>(x.size()); ++i) {
    orx_tef_kernel_dTan_SC_HA(i, x.data(), r.data(), static_cast<int>(x.size()));
    EXPECT_LE(std::fabs(r[i] - expected[i]), 0x1p-52 * std::fabs(expected[i])) << x[i];
    EXPECT_EQ(std::signbit(r[i]), std::signbit(expected[i])) << x[i];
  }
}

std::string told;
int note(TefErrorContext* e) {
  told = std::string(e->funcName) + ' ' + std::to_string(e->index) + ' ' + std::to_string(e->status);
  return 0;
}

TEST(ScalarTangent, ReportsInfinitiesInItsOwnName) {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_CALLBACK);
  _tefSetErrorCallBack(note);
  const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
  const float s[] = {1, -inf, nan};
  const double d[] = {1, inf, nan};
  const auto check = [](auto call, const auto* a, const char* text) {
    std::remove_const_t<std::remove_reference_t<decltype(*a)>> r[3] = {};
    for (int i : {0, 2}) {
      told.clear();
      call(i, a, r, 3);
      EXPECT_EQ(told, "");
    }
    EXPECT_NEAR(r[0], 1.5574077, 1e-6);
    EXPECT_TRUE(std::isnan(r[2]));
    call(1, a, r, 3);
    EXPECT_TRUE(std::isnan(r[1]));
    EXPECT_EQ(told, text);
  };
  check(orx_tef_kernel_dTan_SC_HA, d, "dTan_HA 1 1");
  check(orx_tef_kernel_dTan_SC_LA, d, "dTan_LA 1 1");
  check(orx_tef_kernel_dTan_SC_A11, d, "dTan_A11 1 1");
  check(orx_tef_kernel_sTan_SC_HA, s, "sTan_HA 1 1");
  check(orx_tef_kernel_sTan_SC_LA, s, "sTan_LA 1 1");
  check(orx_tef_kernel_sTan_SC_A11, s, "sTan_A11 1 1");
}

}  // namespace
