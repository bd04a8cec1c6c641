// Complex functions: what the error layer is told of them, divisions that are hard, and symmetries that no rounding breaks.
#include <gtest/gtest.h>
#include <x86intrin.h>

#include <cfenv>
#include <cfloat>
#include <cmath>
#include <complex>
#include <limits>
#include <random>
#include <vector>

#include "functions.h"
#include "orx/tef_scalar.h"

namespace {

using Single = std::complex<float>;
using Double = std::complex<double>;

constexpr double kInf = std::numeric_limits<double>::infinity();

template <class T>
auto* parts(std::vector<std::complex<T>>& z) {
  return reinterpret_cast<T*>(z.data());
}
template <class T>
auto* parts(const std::vector<std::complex<T>>& z) {
  return reinterpret_cast<const T*>(z.data());
}

std::vector<TefErrorContext> seen;
void (*action)(TefErrorContext*);

int record(TefErrorContext* e) {
  seen.push_back(*e);
  if (action) action(e);
  return 0;
}

class Complex : public testing::Test {
 protected:
  test::TefState state;
  void SetUp() override {
    seen.clear();
    action = nullptr;
    _tefSetMode(TEF_HA | TEF_ERRMODE_CALLBACK);
    _tefSetErrorCallBack(record);
  }
};

TEST_F(Complex, CallBackSeesBothPartsAndMayChangeThem) {
  std::vector<Single> a(21, {1, 2}), b(21, {3, 4}), r(21);
  a[17] = {2e38f, 5};
  b[17] = {2e38f, 6};
  action = [](TefErrorContext* e) { e->res1 = 7, e->res1Im = 8; };
  _tefcAdd(21, parts(a), parts(b), parts(r));
  ASSERT_EQ(seen.size(), 1u);
  const TefErrorContext& e = seen[0];
  EXPECT_EQ(e.status, StatusOverflow);
  EXPECT_EQ(e.index, 17);
  EXPECT_STREQ(e.funcName, "vcAdd");
  EXPECT_EQ(e.arg1, double{2e38f});
  EXPECT_EQ(e.arg1Im, 5);
  EXPECT_EQ(e.arg2, double{2e38f});
  EXPECT_EQ(e.arg2Im, 6);
  EXPECT_EQ(e.res1, kInf);
  EXPECT_EQ(e.res1Im, 11);
  EXPECT_EQ(r[17], Single(7, 8));
  EXPECT_EQ(r[16], Single(4, 6));
}

// A real operand of a complex function has imaginary parts 0.
TEST_F(Complex, CallBackSeesRealOperands) {
  std::vector<Double> z(9, {3, 4});
  std::vector<double> r(9);
  z[8] = {DBL_MAX, -DBL_MAX};
  _tefzAbs(9, parts(z), r.data());
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].index, 8);
  EXPECT_EQ(seen[0].arg1Im, -DBL_MAX);
  EXPECT_EQ(seen[0].res1, kInf);
  EXPECT_EQ(seen[0].res1Im, 0);

  std::vector<float> x(5, 1.0f);
  std::vector<Single> y(5);
  x[3] = -std::numeric_limits<float>::infinity();
  _tefcCIS(5, x.data(), parts(y));
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[1].status, StatusDomain);
  EXPECT_EQ(seen[1].index, 3);
  EXPECT_EQ(seen[1].arg1, -kInf);
  EXPECT_EQ(seen[1].arg1Im, 0);
  EXPECT_TRUE(std::isnan(seen[1].res1) && std::isnan(seen[1].res1Im));
}

// M. Baudin, R. Smith, "A robust complex division in Scilab" (2012): each part of the quotients, with their digits.
TEST_F(Complex, HardDivisions) {
  const struct {
    Double a, b, quotient;
  } cases[] = {
      {{1, 1}, {1, 0x1p1023}, {0x1p-1023, -0x1p-1023}},
      {{1, 1}, {0x1p-1023, 0x1p-1023}, {0x1p1023, 0}},
      {{0x1p1023, 0x1p-1023}, {0x1p677, 0x1p-677}, {0x1p346, -0x1p-1008}},
      {{0x1p1023, 0x1p1023}, {1, 1}, {0x1p1023, 0}},
      {{0x1p1020, 0x1p-844}, {0x1p656, 0x1p-780}, {0x1p364, -0x1p-1072}},
      {{0x1p-71, 0x1p1021}, {0x1p1001, 0x1p-323}, {0x1p-1072, 0x1p20}},
      {{0x1p-347, 0x1p-54}, {0x1p-1037, 0x1p-1058}, {3.898125604559113300e289, 8.174961907852353577e295}},
      {{0x1p-1074, 0x1p-1074}, {0x1p-1073, 0x1p-1074}, {0.6, 0.2}},
      {{0x1p1015, 0x1p-989}, {0x1p1023, 0x1p1023}, {0.001953125, -0.001953125}},
      {{0x1p-622, 0x1p-1071}, {0x1p-343, 0x1p-798}, {1.02951151789360578e-84, 6.97145987515076231e-220}}};
  for (const auto& c : cases) {
    std::vector<Double> a{c.a}, b{c.b}, r(1);
    _tefzDiv(1, parts(a), parts(b), parts(r));
    EXPECT_DOUBLE_EQ(r[0].real(), c.quotient.real()) << c.a << "/" << c.b;
    EXPECT_DOUBLE_EQ(r[0].imag(), c.quotient.imag()) << c.a << "/" << c.b;
  }
  EXPECT_TRUE(seen.empty());
}

// Parts of all sizes, zeros among them.
std::vector<Double> numbers(int count) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> exponent(-8, 6), sign(-1, 1);
  std::vector<Double> all;
  for (int i = 0; i < count; ++i) {
    const auto part = [&] {
      return random() % 7 == 0 ? 0.0 : std::copysign(std::exp2(exponent(random)), sign(random));
    };
    const double re = part();
    all.emplace_back(re, part());
  }
  return all;
}

// f(conj z) = conj f(z), to the last bit and the signs of zeros: on a branch cut they tell the side.
TEST_F(Complex, ConjugateArgumentsHaveConjugateResults) {
  const struct {
    const char* name;
    decltype(orx_tef_kernel_zExp_ttab)& kernels;
  } functions[] = {{"zExp", orx_tef_kernel_zExp_ttab},
                   {"zLn", orx_tef_kernel_zLn_ttab},
                   {"zSqrt", orx_tef_kernel_zSqrt_ttab}};
  std::vector<Double> z = numbers(500), conjugate(500), f(500), g(500);
  _tefzConj(500, parts(z), parts(conjugate));
  for (const auto& function : functions)
    for (const auto kernel : function.kernels) {
      kernel(500, parts(z), parts(f));
      kernel(500, parts(conjugate), parts(g));
      for (size_t i = 0; i < 500; ++i) {
        EXPECT_EQ(f[i].real(), g[i].real()) << function.name << z[i];
        EXPECT_EQ(f[i].imag(), -g[i].imag()) << function.name << z[i];
        EXPECT_NE(std::signbit(f[i].imag()), std::signbit(g[i].imag())) << function.name << z[i];
      }
    }
}

// With 0 for a part the functions are those of real numbers, with nothing in the other part.
TEST_F(Complex, RealArguments) {
  std::vector<double> x, ln, root, power;
  std::vector<Double> z, r(500);
  for (const Double& number : numbers(500)) {
    x.push_back(std::fabs(number.real()) + 0x1p-10);
    z.emplace_back(x.back(), -0.0);
  }
  const auto check = [&](const std::vector<double>& expected) {
    for (size_t i = 0; i < 500; ++i) {
      EXPECT_LE(std::fabs(r[i].real() - expected[i]), std::fabs(expected[i]) * 0x1p-52) << x[i];
      EXPECT_TRUE(r[i].imag() == 0 && std::signbit(r[i].imag())) << x[i];
    }
  };
  for (auto* v : {&ln, &root, &power}) v->resize(500);
  _tefdLn(500, x.data(), ln.data());
  _tefzLn(500, parts(z), parts(r));
  check(ln);
  _tefdSqrt(500, x.data(), root.data());
  _tefzSqrt(500, parts(z), parts(r));
  check(root);
  _tefdExp(500, x.data(), power.data());
  _tefzExp(500, parts(z), parts(r));
  check(power);
}

// Kernels that keep to the x87 control word have the same results whatever MXCSR says, and leave it alone: of each 500
// elements nearly all to the last bit, for vectors and the routine for one number round apart in few.
TEST_F(Complex, ResultsDoNotDependOnMXCSR) {
  const auto check = [](const char* name, auto* kernel, auto z) {
    using C = typename decltype(z)::value_type;
    std::vector<C> usual(z.size()), other(z.size());
    const int n = static_cast<int>(z.size());
    kernel(n, parts(z), parts(usual));
    for (const unsigned csr : {0x7F80u, 0x5F80u, 0x9FC0u, 0x0F80u, 0x1F00u}) {
      const unsigned caller = _mm_getcsr();
      _mm_setcsr(csr);
      kernel(n, parts(z), parts(other));
      EXPECT_EQ(_mm_getcsr() & ~0x3Fu, csr) << name;
      _mm_setcsr(caller);
      int different = 0;
      for (size_t i = 0; i < z.size(); ++i) different += usual[i] != other[i];
      EXPECT_LE(different, 5) << name << " under " << std::hex << csr;
    }
  };
  const std::vector<Double> z = numbers(500);
  const std::vector<Single> c(z.begin(), z.end());
#define ORX_CHECK(Fn)                                \
  check("c" #Fn, orx_tef_kernel_c##Fn##_ttab[0], c); \
  check("z" #Fn, orx_tef_kernel_z##Fn##_ttab[0], z);
  ORX_CHECK(Sin)
  ORX_CHECK(Cosh)
  ORX_CHECK(Tanh)
  ORX_CHECK(Log10)
  ORX_CHECK(Asin)
  ORX_CHECK(Acosh)
  ORX_CHECK(Atan)
#undef ORX_CHECK
}

// Vectors and the routine for one number go different ways to results that are within 0.51 ulp, or 0.75 of the modulus:
// next to the cuts, to the points where they end and to the unit circle, too.
std::vector<Double> telling_numbers() {
  std::vector<Double> all = numbers(200);
  std::vector<double> sizes = {
      0, 0x1p-149, 0x1p-126, 0x1.8p-125, 0x1p-70, 0x1p-59, 0x1p-30, 1 / 3.0,        1.25,
      3, 95,       180,      0x1p20,     0x1p59,  0x1p63,  0x1p123, 0x1.fffffep+127};
  for (const double off : {0x1p-52, 0x1p-30, 0x1p-10, 0.0}) {
    sizes.push_back(1 + off);
    sizes.push_back(1 - off / 2);
  }
  for (const double x : sizes)
    for (const double y : sizes)
      for (const double sign : {1.0, -1.0}) all.insert(all.end(), {{x, sign * y}, {-x, sign * y}});
  for (int i = 0; i < 200; ++i) all.push_back(std::polar(1.0, 0.031 * i));
  return all;
}
// Next to each other, or the same of what is not finite.
template <class T>
bool within(T a, T b, T error) {
  return a == b || std::fabs(a - b) <= error + std::numeric_limits<T>::denorm_min() || (a != a && b != b);
}

TEST_F(Complex, VectorsAgreeWithTheRoutineForOneNumber) {
  const auto check = [](const char* name, auto* kernel, auto* routine, auto z) {
    using T = typename decltype(z)::value_type::value_type;
    constexpr T ulp = std::numeric_limits<T>::epsilon();
    decltype(z) r(z.size());
    kernel(static_cast<int>(z.size()), parts(z), parts(r));
    for (size_t i = 0; i < z.size(); ++i) {
      double one[2];
      routine(double{z[i].real()}, double{z[i].imag()}, one);
      const T re = static_cast<T>(one[0]), im = static_cast<T>(one[1]);
      EXPECT_TRUE(within(r[i].real(), re, std::fabs(re) * ulp) &&
                  within(r[i].imag(), im, std::fabs(im) * ulp))
          << name << z[i] << ": " << r[i] << " and " << re << ", " << im;
    }
  };
  const std::vector<Double> z = telling_numbers();
  const std::vector<Single> c(z.begin(), z.end());
#define ORX_CHECK(Fn, name)                                                          \
  check("c" #Fn, orx_tef_kernel_c##Fn##_ttab[0], orx_tef_kernel_##name##_scalar, c); \
  check("z" #Fn, orx_tef_kernel_z##Fn##_ttab[0], orx_tef_kernel_##name##_scalar, z);
  ORX_CHECK(Sin, csin)
  ORX_CHECK(Cos, ccos)
  ORX_CHECK(Tan, ctan)
  ORX_CHECK(Sinh, csinh)
  ORX_CHECK(Cosh, ccosh)
  ORX_CHECK(Tanh, ctanh)
  ORX_CHECK(Asin, casin)
  ORX_CHECK(Acos, cacos)
  ORX_CHECK(Atan, catan)
  ORX_CHECK(Asinh, casinh)
  ORX_CHECK(Acosh, cacosh)
  ORX_CHECK(Atanh, catanh)
  ORX_CHECK(Log10, clog10)
#undef ORX_CHECK
}

// Exact ones, too, such as the arctangent of a denormal number.
TEST_F(Complex, DenormalResultsOfSinglesRaiseUnderflow) {
  const auto check = [](const char* name, auto* kernel) {
    for (const Double number : telling_numbers()) {
      const std::vector<Single> z(1, Single(number));
      std::vector<Single> r(1);
      std::feclearexcept(FE_ALL_EXCEPT);
      kernel(1, parts(z), parts(r));
      const bool raised = std::fetestexcept(FE_UNDERFLOW) != 0;
      const auto denormal = [](float part) { return std::fpclassify(part) == FP_SUBNORMAL; };
      EXPECT_TRUE(raised || !(denormal(r[0].real()) || denormal(r[0].imag())))
          << name << z[0] << ": " << r[0];
    }
  };
#define ORX_CHECK(Fn) check("c" #Fn, orx_tef_kernel_c##Fn##_ttab[0]);
  ORX_CHECK(Sin)
  ORX_CHECK(Tan)
  ORX_CHECK(Asin)
  ORX_CHECK(Atan)
  ORX_CHECK(Atanh)
#undef ORX_CHECK
}

TEST_F(Complex, PowersInVectorsAgreeWithTheRoutineForOneNumber) {
  const std::vector<Double> a = telling_numbers();
  std::vector<Double> r(a.size());
  for (const Double b :
       {Double{3, -1}, Double{-0.5, 0}, Double{0, 20}, Double{300, 150}, Double{775, 2420}}) {
    orx_tef_kernel_zPowx_ttab[0](static_cast<int>(a.size()), parts(a), b.real(), b.imag(), parts(r));
    for (size_t i = 0; i < a.size(); ++i) {
      double one[2];
      orx_tef_kernel_cpow_scalar(a[i].real(), a[i].imag(), b.real(), b.imag(), one);
      const double error = std::hypot(one[0], one[1]) * 1.5 * 0x1p-52;
      EXPECT_TRUE(within(r[i].real(), one[0], error) && within(r[i].imag(), one[1], error))
          << a[i] << "^" << b << ": " << r[i] << " and " << one[0] << ", " << one[1];
    }
  }
}

}  // namespace
