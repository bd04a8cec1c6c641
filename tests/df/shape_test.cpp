// Slopes that keep the shape, antiderivatives, call-backs for sites outside: beside what SciPy 1.10.1 and GSL 2.7.1
// print for the same seven points.
#include "fixture.h"

namespace {

template <class Real>
class Shapes : public ::testing::Test {};
TYPED_TEST_SUITE(Shapes, Precisions);

template <class Real>
struct More;
#define MORE(t, Real)                                                      \
  template <>                                                              \
  struct More<Real> {                                                      \
    static constexpr auto slopes = orx_df_kernel_##t##ShapeSlopes1D;       \
    static constexpr auto primitive = orx_df_kernel_##t##Antiderivative1D; \
    static constexpr auto nan_outside = orx_df_kernel_##t##NanOutside;     \
    static constexpr auto error_outside = orx_df_kernel_##t##ErrorOutside; \
  };
MORE(d, double)
MORE(s, float)
#undef MORE

template <class Real>
const std::vector<Real> kX = {0, 1, Real(2.5), 3, 4, 6, 7};
template <class Real>
const std::vector<Real> kY = {1, 2, Real(2.5), 5, 4, 4, Real(4.5)};
constexpr double kPchip[] = {1.2666666666666666, 0.5172413793103449, 0.7317073170731708, 0, 0, 0,
                             0.6666666666666667};
constexpr double kSteffen[] = {1, 0.66666666666666663, 0.66666666666666663, 0, 0, 0, 0.5};
constexpr double kNatural[] = {1.6500267522739431, -0.3000535045478865, 4.5252273943285175,
                               3.3660781166399145, -2.246923488496522,  0.7493846976993044,
                               0.3753076511503479};

TYPED_TEST(Shapes, SlopesOfSciPyAndGsl) {
  using Real = TypeParam;
  std::vector<Real> slopes(7);
  // scipy.interpolate.PchipInterpolator(x, y).derivative()(x); gsl_interp_steffen, by gsl_spline_eval_deriv.
  for (const auto& [rule, expected] :
       {std::pair(ORX_DF_PCHIP, kPchip), std::pair(ORX_DF_STEFFEN, kSteffen)}) {
    ASSERT_EQ(More<Real>::slopes(7, kX<Real>.data(), kY<Real>.data(), rule, slopes.data()), 0);
    for (size_t i = 0; i < 7; ++i) EXPECT_NEAR(slopes[i], expected[i], 4 * kEps<Real>) << i;
  }
  // Of the derivatives of SciPy's natural spline, CubicSpline(x, y, bc_type="natural")(x, 1), one has the wrong
  // sign, one is thrice the lesser slope at most, some stand at turns of the data.
  std::copy_n(kNatural, 7, slopes.begin());
  ASSERT_EQ(More<Real>::slopes(7, kX<Real>.data(), kY<Real>.data(), ORX_DF_HYMAN, slopes.data()), 0);
  const double filtered[] = {kNatural[0], 0, 1, 0, 0, 0, kNatural[6]};
  for (size_t i = 0; i < 7; ++i) EXPECT_NEAR(slopes[i], filtered[i], 4 * kEps<Real>) << i;
}

// Whatever the data, no cell leaves the range of its two values, once the Hermite builder has taken the slopes.
TYPED_TEST(Shapes, CubicsStayBetweenTheirValues) {
  using Real = TypeParam;
  for (const int64_t nx : {2, 3, 4, 50})
    for (const int64_t rule : {ORX_DF_PCHIP, ORX_DF_STEFFEN, ORX_DF_HYMAN}) {
      const auto x = make_grid<Real>(nx, 0.45);
      auto y = random_values<Real>(nx, -1, 1, 3);
      for (size_t i = 10; i + 1 < y.size(); i += 7) y[i] = y[i - 1];
      auto slopes = random_values<Real>(nx, -4, 4, 5);
      ASSERT_EQ(More<Real>::slopes(nx, x.data(), y.data(), rule, slopes.data()), 0);
      if (nx == 2) {
        EXPECT_EQ(slopes[0], slopes[1]);
        continue;
      }
      Spline<Real> s(x, 0, {y});
      s.describe(4, ORX_DF_HERMITE, 12, {slopes[0], slopes.back()}, ORX_DF_FIRST_DERIVATIVES,
                 {slopes.begin() + 1, slopes.end() - 1});
      ASSERT_EQ(Api<Real>::hermite(s.task, 0, 0, nullptr), 0);
      for (size_t i = 0; i + 1 < size_t(nx); ++i)
        for (int k = 0; k <= 16; ++k) {
          const long double t = ((long double)x[i + 1] - x[i]) * k / 16;
          const auto value = double(derivative(s.cell(0, int64_t(i)), 4, 0, t));
          EXPECT_GE(value, double(std::min(y[i], y[i + 1])) - 20 * kEps<Real>) << rule << ' ' << i;
          EXPECT_LE(value, double(std::max(y[i], y[i + 1])) + 20 * kEps<Real>) << rule << ' ' << i;
        }
    }
  Real out[3];
  const Real in[3] = {0, 1, 2};
  EXPECT_EQ(More<Real>::slopes(1, in, in, 0, out), ORX_DF_ERROR_GRID_SIZE);
  EXPECT_EQ(More<Real>::slopes(3, nullptr, in, 0, out), ORX_DF_ERROR_GRID);
  EXPECT_EQ(More<Real>::slopes(3, in, nullptr, 0, out), ORX_DF_ERROR_FUNCS);
  EXPECT_EQ(More<Real>::slopes(3, in, in, 0, nullptr), ORX_DF_ERROR_INT_CONDS);
  EXPECT_EQ(More<Real>::slopes(3, in, in, 3, out), ORX_DF_ERROR_METHOD);
}

TYPED_TEST(Shapes, AntiderivativeOfSciPy) {
  using Real = TypeParam;
  Spline<Real> s(kX<Real>, 0, {kY<Real>});
  s.describe(4, ORX_DF_NATURAL, ORX_DF_FREE_END);
  ASSERT_EQ(Api<Real>::natural(s.task, 0, 0, nullptr), 0);
  Spline<Real> primitive(kX<Real>, 0, {kY<Real>});
  primitive.describe(5, 0);
  ASSERT_EQ(More<Real>::primitive(s.task, 0, primitive.coeffs.data()), 0);
  std::vector<Real> result;
  ASSERT_EQ(primitive.interpolate({Real(0), Real(0.5), Real(2.75), Real(5.5), Real(7)}, {1, 1}, result, 16),
            0);
  // CubicSpline(x, y, bc_type="natural").antiderivative() at the same sites.
  const double expected[] = {0, 0.6960966760299625, 4.9178539033239685, 16.104306071094168,
                             22.28206928838951};
  for (size_t i = 0; i < 5; ++i) EXPECT_NEAR(result[2 * i], expected[i], 30 * kEps<Real>) << i;
  std::vector<Real> values;
  ASSERT_EQ(s.interpolate({Real(0), Real(0.5), Real(2.75), Real(5.5), Real(7)}, {}, values), 0);
  for (size_t i = 0; i < 5; ++i) EXPECT_NEAR(result[2 * i + 1], values[i], 10 * kEps<Real>) << i;

  EXPECT_EQ(More<Real>::primitive(nullptr, 0, result.data()), ORX_DF_ERROR_TASK);
  EXPECT_EQ(More<Real>::primitive(s.task, 1, result.data()), ORX_DF_ERROR_INDEX);
  EXPECT_EQ(More<Real>::primitive(s.task, 0, nullptr), ORX_DF_ERROR_COEFFS);
  s.describe(3, ORX_DF_SUBBOTIN);
  EXPECT_EQ(More<Real>::primitive(s.task, 0, result.data()), ORX_DF_ERROR_SPLINE_KIND);
}

// A long sum keeps its digits: the integrals of many cells on a uniform partition.
TYPED_TEST(Shapes, AntiderivativeOfManyCells) {
  using Real = TypeParam;
  const int64_t nx = 200001;
  std::vector<Real> points(size_t(nx), Real(2)), y(size_t(nx), Real(0.1));
  points[0] = 0;
  Spline<Real> even(points, ORX_DF_UNIFORM_PARTITION, {y});
  even.describe(2, 0);
  ASSERT_EQ(Api<Real>::linear(even.task, 0, 0, 0, nullptr), 0);
  std::vector<Real> out(size_t(3 * (nx - 1)));
  ASSERT_EQ(More<Real>::primitive(even.task, 0, out.data()), 0);
  for (int64_t i = 0; i < nx - 1; i += 997)
    ASSERT_NEAR(double(out[size_t(3 * i)]), double(Real(0.1)) * 2 * double(i) / double(nx - 1),
                8 * kEps<Real> * 0.2);
}

TYPED_TEST(Shapes, CallBacksForSitesOutside) {
  using Real = TypeParam;
  Spline<Real> s(kX<Real>, 0, {kY<Real>});
  s.describe(2, 0);
  ASSERT_EQ(Api<Real>::linear(s.task, 0, 0, 0, nullptr), 0);
  std::vector<Real> sites = random_values<Real>(100, -2, 9, 3), result(200);
  sites[0] = 0, sites[1] = -1, sites[2] = 8;
  int64_t wanted = 2;
  const int32_t orders[] = {1, 1};
  const auto run = [&](typename Api<Real>::InterpCb callback, int64_t n) {
    return Api<Real>::interpolate(s.task, 1, 0, n, sites.data(), 0, 2, orders, nullptr, result.data(), 0,
                                  callback, &wanted, callback, &wanted, nullptr, nullptr, nullptr, nullptr,
                                  nullptr, nullptr);
  };
  for (const int64_t n : {3, 100}) {
    ASSERT_EQ(run(More<Real>::nan_outside, n), 0);
    for (int64_t i = 0; i < n; ++i) {
      const bool inside = sites[size_t(i)] >= 0 && sites[size_t(i)] < 7;
      EXPECT_EQ(std::isnan(result[size_t(i)]), !inside);
      EXPECT_EQ(std::isnan(result[size_t(n + i)]), !inside);
    }
    EXPECT_EQ(run(More<Real>::error_outside, n), ORX_DF_ERROR_OUTSIDE);
    EXPECT_EQ(run(More<Real>::error_outside, 1), 0);
  }
}

}  // namespace
