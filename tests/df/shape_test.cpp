// Slopes that keep the shape, antiderivatives, roots, call-backs for sites outside: beside what SciPy 1.10.1 and GSL 2.7.1
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
    static constexpr auto roots = orx_df_kernel_##t##Roots1D;              \
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

// Where derivative number `derivative` takes the level, in an array with room for one more.
template <class Real>
std::vector<Real> roots_of(const Spline<Real>& s, int64_t derivative, double level, double from, double to) {
  int64_t count = -7, written = -7;
  EXPECT_EQ(More<Real>::roots(s.task, 0, derivative, Real(level), Real(from), Real(to), 0, nullptr, &count),
            0);
  std::vector<Real> sites(size_t(count + 1), Real(-77));
  EXPECT_EQ(More<Real>::roots(s.task, 0, derivative, Real(level), Real(from), Real(to), count, sites.data(),
                              &written),
            0);
  EXPECT_EQ(written, count);
  EXPECT_EQ(sites.back(), Real(-77));
  sites.pop_back();
  return sites;
}

template <class Real>
void expect_near(const std::vector<Real>& found, const std::vector<double>& expected, double error) {
  ASSERT_EQ(found.size(), expected.size());
  for (size_t i = 0; i < found.size(); ++i) EXPECT_NEAR(found[i], expected[i], error) << i;
}

TYPED_TEST(Shapes, RootsOfSciPy) {
  using Real = TypeParam;
  Spline<Real> s(kX<Real>, 0, {kY<Real>});
  s.describe(4, ORX_DF_NATURAL, ORX_DF_FREE_END);
  ASSERT_EQ(Api<Real>::natural(s.task, 0, 0, nullptr), 0);
  // CubicSpline(x, y, bc_type="natural"): solve(4.25), solve(4), derivative().roots(), derivative(2).solve(3), all
  // with extrapolate=False.
  constexpr double error = 100 * kEps<Real>;
  expect_near(roots_of(s, 0, 4.25, -1, 9), {2.8294434930659054, 3.896166261186624, 6.404161014787368}, error);
  expect_near(roots_of(s, 0, 4, -1, 9), {2.782395661028791, 4, 6}, error);
  expect_near(roots_of(s, 1, 0, 0, 7),
              {0.9198547389082494, 1.8928380679392691, 3.2706266970010622, 4.784816399995655}, error);
  expect_near(roots_of(s, 2, 3, 0, 7),
              {1.7271476578181737, 2.6449132867310303, 3.96022093761257, 4.331415913394547}, error);
  // A part of the interval, with an end at a root and a cell cut on both sides; nothing where the ends are exchanged.
  expect_near(roots_of(s, 0, 4, 4, 5.9), {4}, error);
  expect_near(roots_of(s, 1, 0, 1.5, 2), {1.8928380679392691}, error);
  expect_near(roots_of(s, 1, 0, 2, 1), {}, error);
}

// Lines, jumps, cells that are the level throughout, and a touch; evenly spaced and not.
TYPED_TEST(Shapes, RootsWithoutCrossing) {
  using Real = TypeParam;
  for (const int64_t hint : {0, 4}) {
    Spline<Real> lines({0, 1, 2, 3, 4, 5}, hint, {{1, -1, 0, 0, 2, 0}});
    lines.describe(2, 0);
    ASSERT_EQ(Api<Real>::linear(lines.task, 0, 0, 0, nullptr), 0);
    expect_near(roots_of(lines, 0, 0, 0, 5), {0.5, 2, 3, 5}, 0);
    expect_near(roots_of(lines, 1, 1.5, 0, 5), {3, 4}, 0);  // slopes -2, 1, 0, 2, -2
    expect_near(roots_of(lines, 0, 0, 2.25, 2.75), {2.25, 2.75}, 0);

    // (t - 1/2)^2 (t + 1) - 1/4 and its mirror image: they touch -1/4 within, and meet at breakpoint 1.
    Spline<Real> touching({0, 1, 2}, hint, {{0, 0, 0}});
    touching.describe(4, ORX_DF_HERMITE);
    touching.coeffs = {0, Real(-0.75), 0, 1, Real(0.25), Real(-2.25), 3, -1};
    Api<Real>::edit_pointer(touching.task, ORX_DF_COEFFS, touching.coeffs.data());
    expect_near(roots_of(touching, 0, -0.25, 0, 2), {0.5, 1.5}, 4 * kEps<Real>);
    expect_near(roots_of(touching, 1, 0, 0, 2), {0.5, 1, 1.5}, 4 * kEps<Real>);
    expect_near(roots_of(touching, 3, 2, 0, 2), {1}, 0);
  }
}

// Every root of random splines, judged by the values beside it, and none left out: the values between two
// neighbours have one sign.
TYPED_TEST(Shapes, RootsOfRandomSplines) {
  using Real = TypeParam;
  const auto x = make_grid<Real>(60, 0.3);
  Spline<Real> s(x, 0, {random_values<Real>(60, -1, 1, 5)});
  s.describe(4, ORX_DF_NATURAL, ORX_DF_FREE_END);
  ASSERT_EQ(Api<Real>::natural(s.task, 0, 0, nullptr), 0);
  for (const int64_t derivative : {0, 1, 2}) {
    auto roots = roots_of(s, derivative, 0, 0.25, 58.5);
    EXPECT_GT(roots.size(), 20u);
    roots.insert(roots.begin(), Real(0.25));
    roots.push_back(Real(58.5));
    std::vector<int32_t> orders(size_t(derivative + 1));
    orders.back() = 1;
    int before = 0;
    for (size_t i = 0; i + 1 < roots.size(); ++i) {
      const double a = roots[i], b = roots[i + 1];
      std::vector<Real> sites, values;
      for (int k = 1; k < 50; ++k) sites.push_back(Real(a + (b - a) * k / 50));
      ASSERT_EQ(s.interpolate(sites, orders, values), 0);
      const int sign = values[25] > 0 ? 1 : -1;
      for (size_t k = 0; k < values.size(); ++k)
        if (std::abs(values[k]) > 20 * double(kEps<Real>) * 10) {
          ASSERT_GT(values[k] * Real(sign), 0) << derivative << ": " << sites[k];
        }
      ASSERT_NE(sign, before) << a;
      before = sign;
    }
  }
}

TYPED_TEST(Shapes, RootsRefuse) {
  using Real = TypeParam;
  Spline<Real> s(kX<Real>, 0, {kY<Real>});
  s.describe(4, ORX_DF_NATURAL, ORX_DF_FREE_END);
  int64_t count = -7;
  Real site;
  const auto ask = [&](DFTask* task, int64_t function, int64_t derivative, int64_t room, Real* sites,
                       int64_t* n) {
    return More<Real>::roots(task, function, derivative, 0, 0, 7, room, sites, n);
  };
  EXPECT_EQ(ask(nullptr, 0, 0, 1, &site, &count), ORX_DF_ERROR_TASK);
  EXPECT_EQ(ask(s.task, 1, 0, 1, &site, &count), ORX_DF_ERROR_INDEX);
  EXPECT_EQ(ask(s.task, 0, 4, 1, &site, &count), ORX_DF_ERROR_METHOD);
  EXPECT_EQ(ask(s.task, 0, -1, 1, &site, &count), ORX_DF_ERROR_METHOD);
  EXPECT_EQ(ask(s.task, 0, 0, 1, nullptr, &count), ORX_DF_ERROR_INTERPOLATION);
  EXPECT_EQ(ask(s.task, 0, 0, 1, &site, nullptr), ORX_DF_ERROR_INTERPOLATION);
  orx_df_kernel_iEditVal(s.task, ORX_DF_SPLINE_ORDER, 5);
  EXPECT_EQ(ask(s.task, 0, 0, 1, &site, &count), ORX_DF_ERROR_SPLINE_KIND);
  EXPECT_EQ(count, -7);
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
