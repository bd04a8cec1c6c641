// The example in frame/kernel.hpp, word for word, and a complex kernel with a complex scalar.
#include <gtest/gtest.h>

#include <cfenv>
#include <cfloat>
#include <cmath>
#include <limits>

#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

using namespace orx::tef;

namespace {

struct Named {
  static constexpr char _TEF_THISFUNC_NAME[] = "vdTest";
};

// 1/sqrt(x), by the processor's root.
struct dInvSqrt : Kernel<double(double)> {
  template <class X>
  static X rare(X x) {  // zeros, denormals, negative numbers, infinities, NaN
    return outside(x, kSmallest, kLargest);
  }
  template <class X>
  static X eval(X x) {
    return kOne / square_root(x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const X one = constant<X>(kOne);
    left.finish(bit_and(less(X{}, x), less(x, kSmallest)), [&](X denormal) {
      return kUp / square_root(select(denormal, x, one) * kUpSquare);  // nothing to report
    });
    left.finish(
        equal(x, X{}), [&](X zero) { return one / select(zero, x, one); }, StatusSingularity);
  }
  static int rare_lane(const double* a, double* r) {  // what is left: negative numbers, infinities, NaN
    if (*a != *a) return *r = *a + *a, StatusOk;
    if (*a > 0) return *r = 0, StatusOk;
    return *r = raise_invalid<double>(), StatusDomain;
  }

 private:
  static constexpr Row<double> kSmallest = DBL_MIN, kLargest = DBL_MAX, kOne = 1.0, kUp = 0x1p60,
                               kUpSquare = 0x1p120;
};

TEST(Example, ResultsStatusAndExceptions) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  const struct {
    double x, result;
    int status, exceptions;
  } cases[] = {{4, 0.5, 0, 0},
               {0x1p-1060, 0x1p530, 0, 0},
               {DBL_MIN, 0x1p511, 0, 0},
               {0.0, kInf, StatusSingularity, FE_DIVBYZERO},
               {-0.0, -kInf, StatusSingularity, FE_DIVBYZERO},
               {-1, NAN, StatusDomain, FE_INVALID},
               {-kInf, NAN, StatusDomain, FE_INVALID},
               {kInf, 0, 0, 0},
               {NAN, NAN, 0, 0}};
  _tefSetMode(TEF_ERRMODE_IGNORE);
  for (const auto& c : cases)
    for (int place = 0; place < 11; ++place) {
      double a[11], r[11];
      for (double& x : a) x = 16;
      a[place] = c.x;
      _tefClearErrStatus();
      std::feclearexcept(FE_ALL_EXCEPT);
      run_kernel<dInvSqrt, Named>(11, static_cast<const double*>(a), r);
      EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT & ~FE_INEXACT), c.exceptions) << c.x;
      EXPECT_EQ(_tefGetErrStatus(), c.status) << c.x;
      for (int i = 0; i < 11; ++i) {
        const double expected = i == place ? c.result : 0.25;
        EXPECT_TRUE(r[i] == expected || (std::isnan(r[i]) && std::isnan(expected))) << c.x << " " << r[i];
      }
    }
}

template <class T>
struct ComplexSum : Kernel<Complex<T>(Complex<T>, Scalar<Complex<T>>)> {
  template <class X>
  static Complex<X> eval(Complex<X> a, Complex<X> b) {
    return {a.re + b.re, a.im + b.im};
  }
};

TEST(Example, ComplexScalar) {
  float a[18], r[18];
  for (int i = 0; i < 18; ++i) a[i] = static_cast<float>(i);
  run_kernel<ComplexSum<float>, Named>(9, static_cast<const float*>(a), Complex<float>{100, 200}, r);
  for (int i = 0; i < 18; ++i) EXPECT_EQ(r[i], a[i] + (i % 2 ? 200 : 100));
}

}  // namespace
