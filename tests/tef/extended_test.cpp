// The scalar functions of the extended type, judged by MPFR: one table tells their bounds and where they may hurt.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cfenv>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "orx/tef.h"
#include "orx/tef_scalar.h"

namespace {

constexpr long double kInf = std::numeric_limits<long double>::infinity();
constexpr long double kNaN = std::numeric_limits<long double>::quiet_NaN();
constexpr long double kLargest = std::numeric_limits<long double>::max();
constexpr long double kSmallest = std::numeric_limits<long double>::min();
constexpr long double kLeast = std::numeric_limits<long double>::denorm_min();

long double sin_of_both(long double x) {
  long double sin, cos;
  orx_tef_kernel_sincosl_scalar(x, &sin, &cos);
  return sin;
}
long double cos_of_both(long double x) {
  long double sin, cos;
  orx_tef_kernel_sincosl_scalar(x, &sin, &cos);
  return cos;
}
long double sinh_of_both(long double x) {
  long double sinh, cosh;
  orx_tef_kernel_sinhcoshl_scalar(x, &sinh, &cosh);
  return sinh;
}
long double cosh_of_both(long double x) {
  long double sinh, cosh;
  orx_tef_kernel_sinhcoshl_scalar(x, &sinh, &cosh);
  return cosh;
}

struct Special {
  long double in, out;
  int raises = 0;
};

struct Function {
  const char* name;
  long double (*function)(long double);
  int (*judge)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);
  double bound;
  long double from, to;  // of finite arguments
  std::vector<long double> around;
  std::vector<Special> specials;
};

const std::vector<Special> kOdd = {{0, 0}, {-0.0L, -0.0L}, {kNaN, kNaN}};

std::vector<Special> with(std::vector<Special> some, const std::vector<Special>& others) {
  some.insert(some.end(), others.begin(), others.end());
  return some;
}

const std::vector<Special> kOscillating = {{kInf, kNaN, FE_INVALID}, {-kInf, kNaN, FE_INVALID}, {kNaN, kNaN}};

Function of_angles(const char* name, decltype(Function::function) function, decltype(Function::judge) judge,
                   std::vector<Special> specials) {
  return {name, function, judge, 0.52, -kLargest, kLargest, {0.785L, 0x1p20L, 0x1p-35L}, std::move(specials)};
}

const std::vector<Function> kFunctions = {
    {"exp",
     orx_tef_kernel_expl_scalar,
     mpfr_exp,
     0.51,
     -12000,
     12000,
     {11356.5234062941439494919L, -11355.137111933024L, -11399.4985314888605585L, 0.0027L, 0x1p-66L, 8192,
      0.69314718L},
     {{0, 1},
      {-0.0L, 1},
      {kInf, kInf},
      {-kInf, 0},
      {kNaN, kNaN},
      {11357, kInf, FE_OVERFLOW},
      {kLargest, kInf, FE_OVERFLOW},
      {-11400, 0, FE_UNDERFLOW},
      {-kLargest, 0, FE_UNDERFLOW}}},
    {"log",
     orx_tef_kernel_logl_scalar,
     mpfr_log,
     0.51,
     0,
     kLargest,
     {1, 0.96875L, 1.0625L, 0.5L, 2, kSmallest, 0.99609375L, 1.00390625L},
     {{1, 0},
      {0, -kInf, FE_DIVBYZERO},
      {-0.0L, -kInf, FE_DIVBYZERO},
      {-1, kNaN, FE_INVALID},
      {kInf, kInf},
      {-kInf, kNaN, FE_INVALID},
      {-kLeast, kNaN, FE_INVALID},
      {kNaN, kNaN}}},
    {"log1p",
     orx_tef_kernel_log1pl_scalar,
     mpfr_log1p,
     0.51,
     -1,
     kLargest,
     {-1, -0.03125L, 0.03125L, 0.0625L, 0x1p-66L, 1, 0x1p64L},
     with(kOdd,
          {{-1, -kInf, FE_DIVBYZERO}, {-2, kNaN, FE_INVALID}, {kInf, kInf}, {-kInf, kNaN, FE_INVALID}})},
    of_angles("sin", orx_tef_kernel_sinl_scalar, mpfr_sin, with(kOscillating, kOdd)),
    of_angles("cos", orx_tef_kernel_cosl_scalar, mpfr_cos, kOscillating),
    {"sincos, sine", sin_of_both, mpfr_sin, 0.52, -100, 100, {}, with(kOscillating, kOdd)},
    {"sincos, cosine", cos_of_both, mpfr_cos, 0.52, -100, 100, {}, kOscillating},
    of_angles("tan", orx_tef_kernel_tanl_scalar, mpfr_tan, with(kOscillating, kOdd)),
    {"sinh",
     orx_tef_kernel_sinhl_scalar,
     mpfr_sinh,
     0.51,
     -12000,
     12000,
     {0.125L, 0x1p-34L, 22, 44, 11357.21655347470389L},
     with(kOdd, {{kInf, kInf}, {-kInf, -kInf}, {12000, kInf, FE_OVERFLOW}, {-12000, -kInf, FE_OVERFLOW}})},
    {"cosh",
     orx_tef_kernel_coshl_scalar,
     mpfr_cosh,
     0.51,
     -12000,
     12000,
     {0.125L, 0x1p-34L, 22, 44, 11357.21655347470389L},
     {{0, 1}, {-0.0L, 1}, {kInf, kInf}, {-kInf, kInf}, {kNaN, kNaN}, {-12000, kInf, FE_OVERFLOW}}},
    {"sinhcosh, sine", sinh_of_both, mpfr_sinh, 0.51, -100, 100, {}, kOdd},
    {"sinhcosh, cosine", cosh_of_both, mpfr_cosh, 0.51, -100, 100, {}, {{0, 1}}},
    {"tanh",
     orx_tef_kernel_tanhl_scalar,
     mpfr_tanh,
     0.51,
     -kLargest,
     kLargest,
     {0.125L, 0x1p-34L, 22, 44},
     with(kOdd, {{kInf, 1}, {-kInf, -1}})},
    {"asin",
     orx_tef_kernel_asinl_scalar,
     mpfr_asin,
     0.51,
     -1,
     1,
     {0.5L, 1, 0x1p-34L, 0.70710678L},
     with(kOdd, {{1.0000001L, kNaN, FE_INVALID}, {-kInf, kNaN, FE_INVALID}})},
    {"acos",
     orx_tef_kernel_acosl_scalar,
     mpfr_acos,
     0.51,
     -1,
     1,
     {0.5L, 1, 0x1p-34L, 0x1p-70L, 0.70710678L},
     {{1, 0}, {-1.5L, kNaN, FE_INVALID}, {kInf, kNaN, FE_INVALID}, {kNaN, kNaN}}},
    {"atan",
     orx_tef_kernel_atanl_scalar,
     mpfr_atan,
     0.51,
     -kLargest,
     kLargest,
     {1, 0x1p-34L, 0.00390625L, 0x1p70L},
     with(kOdd, {{kInf, 1.57079632679489661923L}, {-kInf, -1.57079632679489661923L}})},
    {"asinh",
     orx_tef_kernel_asinhl_scalar,
     mpfr_asinh,
     0.51,
     -kLargest,
     kLargest,
     {1, 0x1p-34L, 0.03125L, 0x1p40L},
     with(kOdd, {{kInf, kInf}, {-kInf, -kInf}})},
    {"acosh",
     orx_tef_kernel_acoshl_scalar,
     mpfr_acosh,
     0.51,
     1,
     kLargest,
     {1, 1.0625L, 0x1p40L},
     {{1, 0}, {kInf, kInf}, {0.5L, kNaN, FE_INVALID}, {-kInf, kNaN, FE_INVALID}, {kNaN, kNaN}}},
    {"atanh",
     orx_tef_kernel_atanhl_scalar,
     mpfr_atanh,
     0.51,
     -1,
     1,
     {1, 0.5L, 0.03125L, 0x1p-34L},
     with(kOdd, {{1, kInf, FE_DIVBYZERO},
                 {-1, -kInf, FE_DIVBYZERO},
                 {2, kNaN, FE_INVALID},
                 {-kInf, kNaN, FE_INVALID}})},
    {"sqrt",
     orx_tef_kernel_sqrtl_scalar,
     mpfr_sqrt,
     0.5,
     0,
     kLargest,
     {1},
     with(kOdd, {{kInf, kInf}, {-1, kNaN, FE_INVALID}})},
    {"fabs",
     orx_tef_kernel_fabsl_scalar,
     mpfr_abs,
     0,
     -kLargest,
     kLargest,
     {},
     {{-0.0L, 0}, {-kInf, kInf}, {kNaN, kNaN}}},
};

// Arguments of every size and sign, at the ends of binades, around given points on all scales, next to multiples of pi/2.
std::vector<long double> arguments(const Function& f) {
  std::mt19937_64 random(1);
  std::vector<long double> all;
  const auto add = [&](long double x) {
    for (const long double y : {x, -x})
      if (y >= f.from && y <= f.to) all.push_back(y);
  };
  const auto significand = [&] { return 1 + static_cast<long double>(random() >> 1) * 0x1p-63L; };
  for (int exponent = -16445; exponent < 16384; exponent += exponent < -100 || exponent > 100 ? 37 : 1)
    for (const long double m : {significand(), significand(), 1.0L, 2 - 0x1p-63L})
      add(std::ldexp(m, exponent));
  for (int exponent = -40; exponent < 14; ++exponent)
    for (int i = 0; i < 150; ++i) add(std::ldexp(significand(), exponent));
  for (const long double point : f.around) {
    long double low = point, high = point;
    for (int i = 0; i < 20; ++i, low = std::nextafter(low, -kInf), high = std::nextafter(high, kInf))
      add(low), add(high);
    for (int scale = -60; scale < 0; ++scale)
      for (int i = 0; i < 4; ++i) add(point * (1 + (i % 2 ? 1 : -1) * std::ldexp(significand(), scale)));
  }
  for (int i = 0; i < 1500; ++i) {
    const long double multiple = static_cast<long double>(random() >> (i % 64)) * 0.78539816339744830962L;
    add(multiple * (1 + static_cast<long double>(static_cast<int>(random() % 5) - 2) * 0x1p-63L));
  }
  return all;
}

// The distance in units of the last place of the exact result in the extended format.
class Judge {
 public:
  Judge() {
    mpfr_init2(x_, 64);
    mpfr_init2(x2_, 64);
    mpfr_init2(y_, 160);
    mpfr_init2(unit_, 160);
  }
  ~Judge() {
    for (mpfr_ptr x : {x_, x2_, y_, unit_}) mpfr_clear(x);
  }
  Judge(const Judge&) = delete;
  Judge& operator=(const Judge&) = delete;

  double error(int (*judge)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t), long double x, long double got) {
    mpfr_set_ld(x_, x, MPFR_RNDN);
    judge(y_, x_, MPFR_RNDN);
    return distance(got);
  }
  double error_of_atan2(long double y, long double x, long double got) {
    mpfr_set_ld(x_, y, MPFR_RNDN);
    mpfr_set_ld(x2_, x, MPFR_RNDN);
    mpfr_atan2(y_, x_, x2_, MPFR_RNDN);
    return distance(got);
  }

 private:
  double distance(long double got) {
    if (mpfr_inf_p(y_)) return std::isinf(got) ? 0 : 1e9;
    if (mpfr_zero_p(y_)) return got == 0 ? 0 : 1e9;
    const long exponent = std::max<long>(mpfr_get_exp(y_) - 64, -16445);
    if (std::isinf(got))
      return mpfr_get_exp(y_) > 16384 && std::signbit(got) == (mpfr_signbit(y_) != 0) ? 0 : 1e9;
    if (std::isnan(got)) return 1e9;
    mpfr_set_ld(unit_, got, MPFR_RNDN);
    mpfr_sub(unit_, unit_, y_, MPFR_RNDN);
    mpfr_mul_2si(unit_, unit_, -exponent, MPFR_RNDN);
    return std::fabs(mpfr_get_d(unit_, MPFR_RNDU));
  }
  mpfr_t x_, x2_, y_, unit_;
};

TEST(ExtendedFunctions, ErrorsAreWithinBounds) {
  Judge judge;
  for (const Function& f : kFunctions) {
    double worst = 0;
    long double at = 0;
    for (const long double x : arguments(f)) {
      const double error = judge.error(f.judge, x, f.function(x));
      if (error > worst) worst = error, at = x;
    }
    EXPECT_LE(worst, f.bound) << f.name << " at " << std::hexfloat << at;
    RecordProperty(f.name, std::to_string(worst));
  }
}

TEST(ExtendedFunctions, AnglesOfPointsOfAnySize) {
  Judge judge;
  std::mt19937_64 random(1);
  double worst = 0;
  for (int i = 0; i < 60000; ++i) {
    const auto number = [&](int range) {
      const long double m = 1 + static_cast<long double>(random() >> 1) * 0x1p-63L;
      return std::ldexp(random() % 2 ? m : -m,
                        static_cast<int>(random() % static_cast<unsigned>(2 * range)) - range);
    };
    const long double y = number(i % 3 ? 6 : 16440), x = number(i % 3 == 1 ? 100 : i % 3 ? 3 : 16380);
    worst = std::max(worst, judge.error_of_atan2(y, x, orx_tef_kernel_atan2l_scalar(y, x)));
  }
  EXPECT_LE(worst, 0.51);
}

bool same(long double a, long double b) {
  return std::isnan(b) ? std::isnan(a) : a == b && std::signbit(a) == std::signbit(b);
}

TEST(ExtendedFunctions, SpecialValuesAndExceptions) {
  for (const Function& f : kFunctions)
    for (const Special& s : f.specials) {
      std::feclearexcept(FE_ALL_EXCEPT);
      const long double y = f.function(s.in);
      EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT & ~FE_INEXACT), s.raises) << f.name << " of " << s.in;
      EXPECT_TRUE(same(y, s.out)) << f.name << " of " << s.in << " = " << y;
    }
}

// C99, F.9.1.4.
TEST(ExtendedFunctions, AnglesOfPointsAtTheEnds) {
  constexpr long double pi = 3.14159265358979323851L;
  const struct {
    long double y, x, angle;
  } kCases[] = {{0, 0, 0},
                {0, -0.0L, pi},
                {0, -1, pi},
                {0, 1, 0},
                {1, 0, pi / 2},
                {1, -0.0L, pi / 2},
                {1, -kInf, pi},
                {1, kInf, 0},
                {kInf, 1, pi / 2},
                {kInf, -kInf, 0.75L * pi},
                {kInf, kInf, pi / 4},
                {kNaN, 1, kNaN},
                {1, kNaN, kNaN},
                {kLeast, kLargest, 0},
                {kLargest, -kLeast, pi / 2},
                {kLeast, -kLargest, pi}};
  for (const auto& c : kCases)
    for (const int sign : {1, -1})
      EXPECT_TRUE(same(orx_tef_kernel_atan2l_scalar(sign * c.y, c.x), sign * c.angle))
          << sign * c.y << ", " << c.x;
}

TEST(ExtendedFunctions, DenormalResultsRaiseUnderflowAndNormalOnesDoNot) {
  for (const Function& f : kFunctions)
    for (const long double x :
         {kSmallest / 8, kSmallest / 2, 0x1p-9000L, 1e-30L, 0.75L, 1.0L, 40.0L, 5000.0L}) {
      if (x < f.from || x > f.to || f.bound <= 0.5 || std::strchr(f.name, ',')) continue;
      std::feclearexcept(FE_ALL_EXCEPT);
      const long double y = f.function(x);
      const bool denormal = std::fpclassify(y) == FP_SUBNORMAL;
      EXPECT_EQ(std::fetestexcept(FE_UNDERFLOW) != 0, denormal) << f.name << " of " << x;
    }
}

// A sum of a row's parts is the value rounded to the extended format.
TEST(ExtendedTables, AreWhatTheirNamesSay) {
  Judge judge;
  const auto sum = [](const double* row) { return static_cast<long double>(row[0]) + row[1]; };
  for (int i = 0; i < 256; ++i) {
    const double r = orx_tef_core_rcp_table_256[i];
    EXPECT_EQ(r, orx_tef_core_double_rcp_table_256[i]);
    EXPECT_NEAR(r * (1 + (i + 0.5) / 256), 1, 0x1p-11);
    const double* log = orx_tef_core_logl_table_256[i];
    EXPECT_LE(judge.error(mpfr_log, r, -sum(log)), 0.51) << i;
    EXPECT_EQ(std::memcmp(log, orx_tef_core_log_table_256[i], 16), 0);
  }
  for (int i = 0; i <= 256; ++i)
    EXPECT_LE(judge.error(mpfr_exp2, i / 256.0L, sum(orx_tef_core_expl_table_256[i])), 0.51) << i;
  for (int i = 0; i <= 128; ++i)
    EXPECT_LE(judge.error(mpfr_atan, i / 128.0L, sum(orx_tef_core_atanl_table_128[i])), 0.51) << i;
  EXPECT_EQ(orx_tef_core_logl_table_256[0][0], 6.245253888266704e-10);
  EXPECT_EQ(orx_tef_core_logl_table_256[0][1], 0.0019550342112779617);
  EXPECT_EQ(orx_tef_core_logl_table_256[255][0], 4.7462229024114625e-07);
  EXPECT_EQ(orx_tef_core_logl_table_256[255][1], 0.6921706199645996);
  EXPECT_EQ(orx_tef_core_rcp_table_256[0], 0.998046875F);
  EXPECT_EQ(orx_tef_core_rcp_table_256[255], 0.50048828125F);
}

TEST(ExtendedFunctions, MagnitudesClearTheSignOfAllThereIs) {
  EXPECT_EQ(orx_tef_kernel__dabs_scalar(-2.5), 2.5);
  EXPECT_EQ(orx_tef_kernel__sabs_scalar(-2.5F), 2.5F);
  EXPECT_FALSE(std::signbit(orx_tef_kernel__dabs_scalar(-std::numeric_limits<double>::quiet_NaN())));
  EXPECT_FALSE(std::signbit(orx_tef_kernel__sabs_scalar(-0.0F)));
}

}  // namespace
