// The error functions and gamma where the meter and the tables of special values do not look: bands of statuses, the exported
// tails, the caller's rounding, identities across the borders of the methods, the zeros of ln gamma.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <limits>
#include <vector>

#include "orx/tef.h"

namespace {

template <class T>
using Unary = void(int, const T*, T*);

template <class T>
T at(Unary<T>* kernel, T x) {
  T y;
  kernel(1, &x, &y);
  return y;
}
template <class T>
int status_at(Unary<T>* kernel, T x) {
  _tefClearErrStatus();
  at(kernel, x);
  return _tefClearErrStatus();
}
// |a - b| in units of b's last place.
template <class T>
double ulps(T a, T b) {
  if (a == b) return 0;
  const T size = std::fabs(b);
  return std::fabs(double(a) - double(b)) /
         double(std::nextafter(size, std::numeric_limits<T>::infinity()) - size);
}

TEST(ErrorFunctions, UnderflowIsReportedFromItsThresholdOn) {
  struct {
    Unary<double>* kernel;
    double sign, denormal, reported, zero;
  } const rows[] = {
      {orx_tef_kernel_dErfc_ttab[1], 1, 26.54325845425098, 26.699372268345602, 27.226017111108366},
      {orx_tef_kernel_dCdfNorm_ttab[0], -1, 37.5193793471445, 37.74026543984266, 38.485408335567335},
      {orx_tef_kernel_dCdfNorm_ttab[1], -1, 37.5193793471445, 37.74026543984266, 38.485408335567335}};
  for (const auto& row : rows) {
    const auto result = [&](double x) { return at(row.kernel, row.sign * x); };
    EXPECT_EQ(status_at(row.kernel, row.sign * row.reported), StatusOk);
    EXPECT_EQ(status_at(row.kernel, row.sign * std::nextafter(row.reported, 99)), StatusUnderflow);
    EXPECT_GE(result(row.denormal - 1e-4), std::numeric_limits<double>::min());
    EXPECT_LT(result(row.denormal + 1e-4), std::numeric_limits<double>::min());
    EXPECT_GT(result(row.zero - 1e-9), 0);
    EXPECT_EQ(result(row.zero + 1e-9), 0);
  }
  EXPECT_EQ(status_at(_tefsErfc, 9.1945486f), StatusOk);
  EXPECT_EQ(status_at(_tefsErfc, 9.19455f), StatusUnderflow);
}

// erfc^-1 as mpmath 1.3 has it, to 25 digits.
TEST(ErrorFunctions, ExportedTails) {
  const double y[2] = {1e-20, 1e-300}, expected[2] = {6.601580622355142561516392, 26.20946996051612388599844};
  double r[3] = {0, 0, -7};
  dErfcInv_Tail(y, r);
  for (int i = 0; i < 2; ++i) EXPECT_LE(ulps(r[i], expected[i]), 1);
  dCdfNormInv_Tail(y, r);
  for (int i = 0; i < 2; ++i) EXPECT_LE(ulps(r[i], std::sqrt(2.0) * expected[i]), 2);
  EXPECT_EQ(r[2], -7);
}

TEST(ErrorFunctions, InverseComplementFollowsTheCallersRounding) {
  std::vector<double> x, up, down;
  for (int i = 1; i < 400; ++i) x.push_back(0.005 * i);
  for (int i = 60; i < 1000; i += 7) x.push_back(std::ldexp(1.3, -i));
  const int n = static_cast<int>(x.size());
  const auto under = [&](int rounding, Unary<double>* kernel) {
    std::vector<double> r(x.size());
    std::fesetround(rounding);
    kernel(n, x.data(), r.data());
    std::fesetround(FE_TONEAREST);
    return r;
  };
  up = under(FE_UPWARD, orx_tef_kernel_dErfcInv_ttab[1]);
  down = under(FE_DOWNWARD, orx_tef_kernel_dErfcInv_ttab[1]);
  const auto nearest = under(FE_TONEAREST, orx_tef_kernel_dErfcInv_ttab[1]);
  int differ = 0;
  for (size_t i = 0; i < x.size(); ++i) {
    EXPECT_LE(ulps(up[i], nearest[i]), 4) << x[i];
    EXPECT_LE(ulps(down[i], nearest[i]), 4) << x[i];
    differ += up[i] != down[i];
  }
  EXPECT_GT(differ, n / 2);
  EXPECT_EQ(under(FE_UPWARD, orx_tef_kernel_dErfcInv_ttab[0]),
            under(FE_DOWNWARD, orx_tef_kernel_dErfcInv_ttab[0]));
}

// The inverse of the distribution undoes it, where the distribution is steep enough to tell, across all borders between rows.
TEST(ErrorFunctions, InversesUndo) {
  for (double p = 1e-17; p < 0.999; p *= 1.0007) {
    const double x = at(_tefdCdfNormInv, p);
    EXPECT_NEAR(at(_tefdCdfNorm, x) / p, 1, 4e-16 * (2 + x * x)) << p;
    const double y = at(_tefdErfcInv, p);
    EXPECT_NEAR(at(_tefdErfc, y) / p, 1, 4e-16 * (2 + 2 * y * y)) << p;
    EXPECT_NEAR(at(_tefdErf, at(_tefdErfInv, p)) / p, 1, 5e-16) << p;
  }
}

// ln gamma(1 + e) = -gamma e + pi^2/12 e^2 - ..., ln gamma(2 + e) = (1 - gamma) e + (pi^2/6 - 1)/2 e^2 - ...: relative
// accuracy at both zeros.
TEST(GammaFunctions, ZerosOfTheLogarithm) {
  const long double euler = 0.57721566490153286060651209008240243L,
                    zeta2 = 1.64493406684822643647241516664602519L,
                    zeta3 = 1.20205690315959428539973816151144999L;
  for (double e = 0x1p-50; e < 1e-5; e *= 1.7)
    for (double signed_e : {e, -e}) {
      const double one = 1 + signed_e, two = 2 + signed_e;
      const long double a = one - 1, b = two - 2;
      const long double near_1 = a * (-euler + a * (zeta2 / 2 - a * (zeta3 / 3)));
      const long double near_2 = b * ((1 - euler) + b * ((zeta2 - 1) / 2 - b * ((zeta3 - 1) / 3)));
      EXPECT_LE(ulps(at(_tefdLGamma, one), double(near_1)), 1) << one;
      if (b != 0) {
        EXPECT_LE(ulps(at(_tefdLGamma, two), double(near_2)), 1) << two;
      }
    }
}

// gamma(x + 1) = x gamma(x), across the methods' border at 8 and by the reflection.
TEST(GammaFunctions, Recurrence) {
  for (double x = -60 + 0x1p-3; x < 169; x += 0x1p-2 + 0x1p-20) {
    if (x == std::nearbyint(x)) continue;
    EXPECT_LE(ulps(at(_tefdTGamma, x + 1), x * at(_tefdTGamma, x)), 4) << x;
  }
}

TEST(GammaFunctions, Factorials) {
  double factorial = 1;
  for (int n = 1; n <= 22; factorial *= n++) {
    EXPECT_EQ(at(_tefdTGamma, double(n)), factorial);
    if (n < 13) {
      EXPECT_EQ(at(_tefsTGamma, float(n)), float(factorial));
    }
  }
}

}  // namespace
