// The complex routines for one number: figures by mpmath, the special values of those that no kernel goes through.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <limits>

#include "orx/tef.h"
#include "orx/tef_scalar.h"

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPi = 3.14159265358979323846;

using Routine = void (*)(double, double, double*);

bool same(double a, double b) {
  return std::isnan(b) ? std::isnan(a) : a == b && std::signbit(a) == std::signbit(b);
}

TEST(ComplexCore, FunctionsOfOnePoint) {
  const struct {
    Routine f;
    double re, im;
  } kOfOnePlusTwoI[] = {
      {orx_tef_kernel_cexp_scalar, -1.13120438375681363843, 2.47172667200481892762},
      {orx_tef_kernel_clog_scalar, 0.8047189562170501873, 1.10714871779409050302},
      {orx_tef_kernel_clog10_scalar, 0.349485002168009402393, 0.480828578784234102704},
      {orx_tef_kernel_csqrt_scalar, 1.27201964951406896425, 0.78615137775742328607},
      {orx_tef_kernel_csin_scalar, 3.16577851321616814674, 1.95960104142160589707},
      {orx_tef_kernel_ccos_scalar, 2.03272300701966552944, -3.05189779915180005751},
      {orx_tef_kernel_ctan_scalar, 0.0338128260798966902844, 1.01479361614663356812},
      {orx_tef_kernel_csinh_scalar, -0.489056259041293673586, 1.40311925062204058802},
      {orx_tef_kernel_ccosh_scalar, -0.642148124715519964845, 1.0686074213827783396},
      {orx_tef_kernel_ctanh_scalar, 1.16673625724091988181, -0.243458201185725252703},
      {orx_tef_kernel_casin_scalar, 0.427078586392476125481, 1.52857091948099816127},
      {orx_tef_kernel_cacos_scalar, 1.14371774040242049375, -1.52857091948099816127},
      {orx_tef_kernel_catan_scalar, 1.33897252229449356112, 0.40235947810852509365},
      {orx_tef_kernel_casinh_scalar, 1.46935174436818527326, 1.06344002357775205619},
      {orx_tef_kernel_cacosh_scalar, 1.52857091948099816127, 1.14371774040242049375},
      {orx_tef_kernel_catanh_scalar, 0.173286795139986327354, 1.17809724509617246442},
  };
  for (const auto& c : kOfOnePlusTwoI) {
    double r[2];
    c.f(1, 2, r);
    EXPECT_DOUBLE_EQ(r[0], c.re);
    EXPECT_DOUBLE_EQ(r[1], c.im);
  }
}

TEST(ComplexCore, PowersKeepTheirDigitsWhereTheExponentIsLarge) {
  double r[2];
  orx_tef_kernel_cpow_scalar(1, 2, 3, -1, r);
  EXPECT_DOUBLE_EQ(r[0], -27.4363819916060505072);
  EXPECT_DOUBLE_EQ(r[1], 19.789310365010697849);
  orx_tef_kernel_cpow_scalar(1.5, -0.75, 400, 300, r);
  EXPECT_DOUBLE_EQ(r[0], 8.11640064202887107747e+149);
  EXPECT_DOUBLE_EQ(r[1], 1.47569155684377538106e+150);
}

// |z|^2 is 1 but for 4.4e-17, which no double sees beside 1; next to the diagonal both squares are below 1/2.
TEST(ComplexCore, LogarithmNextToTheUnitCircle) {
  double r[2];
  orx_tef_kernel_clog_scalar(0.6, 0.8, r);
  EXPECT_EQ(r[0], 2.2204460492503131548e-17);
  EXPECT_EQ(r[1], 0.927295218001612276837);
  orx_tef_kernel_clog_scalar(0.70708866605473508, -0.70703922745273728, r);
  EXPECT_EQ(r[0], -6.0578259563214011277e-05);
  orx_tef_kernel_clog10_scalar(0.70708866605473508, -0.70703922745273728, r);
  EXPECT_EQ(r[0], -2.6308803851606739386e-05);
}

// The nearer the sum of squares is to 1 the more of it cancels; here |z|^2 - 1 is 2^-91, 2^-110 and 2^-156. Figures by mpmath.
TEST(ComplexCore, LogarithmOfNumbersWhoseSquaresCancel) {
  const struct {
    double z[2], ln, angle;
  } kCases[] = {
      {{0x1.fffffeaf008d7p-1, 0x1.25b852bf5cbd0p-12}, 2.0674660883720050228e-28, 0.00028011323591978930143},
      {{0x1.ffffffffd8f00p-1, 0x1.8ffffffff85eep-18}, 3.5032461608120426773e-34, 5.9604644775478857599e-6},
      {{0x1.ffffffffffffcp-1, 0x1.fffffffffffffp-26}, 5.4738221262688166833e-48, 2.9802322387695313603e-8}};
  for (const auto& c : kCases) {
    double r[2];
    orx_tef_kernel_clog_scalar(c.z[0], c.z[1], r);
    EXPECT_EQ(r[0], c.ln);
    EXPECT_EQ(r[1], c.angle);
    orx_tef_kernel_zLn_G9HAynn(1, c.z, r);
    EXPECT_EQ(r[0], c.ln);
    EXPECT_EQ(r[1], c.angle);
    orx_tef_kernel_zLog10_PXHAynn(1, c.z, r);
    EXPECT_DOUBLE_EQ(r[0], c.ln / 2.30258509299404568402);
    EXPECT_DOUBLE_EQ(r[1], c.angle / 2.30258509299404568402);
  }
}

// C99, G.6.3.1, G.6.3.2, G.6.4.2; with the imaginary part's sign changed the result's changes, too.
TEST(ComplexCore, SpecialValuesOfExponentialLogarithmAndRoot) {
  const struct {
    Routine f;
    double x, y, re, im;
    int raises = 0;
  } kCases[] = {
      {orx_tef_kernel_cexp_scalar, 0, 0, 1, 0},
      {orx_tef_kernel_cexp_scalar, -0.0, 0, 1, 0},
      {orx_tef_kernel_cexp_scalar, 1, kInf, kNaN, kNaN, FE_INVALID},
      {orx_tef_kernel_cexp_scalar, 1, kNaN, kNaN, kNaN},
      {orx_tef_kernel_cexp_scalar, kInf, 0, kInf, 0},
      {orx_tef_kernel_cexp_scalar, -kInf, 2, -0.0, 0},
      {orx_tef_kernel_cexp_scalar, kInf, 2, -kInf, kInf},
      {orx_tef_kernel_cexp_scalar, -kInf, kInf, 0, 0},
      {orx_tef_kernel_cexp_scalar, kInf, kInf, kInf, kNaN, FE_INVALID},
      {orx_tef_kernel_cexp_scalar, -kInf, kNaN, 0, 0},
      {orx_tef_kernel_cexp_scalar, kInf, kNaN, kInf, kNaN},
      {orx_tef_kernel_cexp_scalar, kNaN, 0, kNaN, 0},
      {orx_tef_kernel_cexp_scalar, kNaN, 1, kNaN, kNaN},
      {orx_tef_kernel_cexp_scalar, 710, 0, kInf, 0, FE_OVERFLOW},
      {orx_tef_kernel_cexp_scalar, -1000, 0, 0, 0, FE_UNDERFLOW},
      {orx_tef_kernel_clog_scalar, 1, 0, 0, 0},
      {orx_tef_kernel_clog_scalar, 0, 0, -kInf, 0, FE_DIVBYZERO},
      {orx_tef_kernel_clog_scalar, -0.0, 0, -kInf, kPi, FE_DIVBYZERO},
      {orx_tef_kernel_clog_scalar, -kInf, 1, kInf, kPi},
      {orx_tef_kernel_clog_scalar, kInf, kInf, kInf, kPi / 4},
      {orx_tef_kernel_clog_scalar, 1, kInf, kInf, kPi / 2},
      {orx_tef_kernel_clog_scalar, kInf, kNaN, kInf, kNaN},
      {orx_tef_kernel_clog_scalar, kNaN, kInf, kInf, kNaN},
      {orx_tef_kernel_clog_scalar, kNaN, 1, kNaN, kNaN},
      {orx_tef_kernel_csqrt_scalar, 0, 0, 0, 0},
      {orx_tef_kernel_csqrt_scalar, -0.0, 0, 0, 0},
      {orx_tef_kernel_csqrt_scalar, -4, 0, 0, 2},
      {orx_tef_kernel_csqrt_scalar, kNaN, kInf, kInf, kInf},
      {orx_tef_kernel_csqrt_scalar, 1, kNaN, kNaN, kNaN},
      {orx_tef_kernel_csqrt_scalar, -kInf, 1, 0, kInf},
      {orx_tef_kernel_csqrt_scalar, kInf, 1, kInf, 0},
      {orx_tef_kernel_csqrt_scalar, -kInf, kNaN, kNaN, kInf},
      {orx_tef_kernel_csqrt_scalar, kInf, kNaN, kInf, kNaN},
      {orx_tef_kernel_csqrt_scalar, kNaN, 1, kNaN, kNaN},
  };
  for (const auto& c : kCases)
    for (const int sign : {1, -1}) {
      double r[2];
      const double y = std::isnan(c.y) ? c.y : sign * c.y, im = std::isnan(c.y) ? c.im : sign * c.im;
      std::feclearexcept(FE_ALL_EXCEPT);
      c.f(c.x, y, r);
      EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT & ~FE_INEXACT), c.raises) << c.x << ", " << y;
      EXPECT_TRUE(same(r[0], c.re) && same(r[1], im)) << c.x << ", " << y << ": " << r[0] << ", " << r[1];
    }
}

// A NaN keeps its sign on the way through i z.
TEST(ComplexCore, SineKeepsSignsOfZerosAndNaN) {
  double r[2];
  for (const double sign : {1.0, -1.0}) {
    orx_tef_kernel_csin_scalar(sign * 0.0, -sign * 0.0, r);
    EXPECT_TRUE(same(r[0], sign * 0.0) && same(r[1], -sign * 0.0));
    orx_tef_kernel_csin_scalar(std::copysign(kNaN, sign), 0, r);
    EXPECT_TRUE(std::isnan(r[0]) && std::signbit(r[0]) == (sign < 0));
    EXPECT_TRUE(same(r[1], 0));
  }
}

}  // namespace
