// Every builder by what defines its spline: values, continuity, ends, inner derivatives, for all storages,
// partitions and boundaries; statuses; threads.
#include "_service/task.hpp"
#include "fixture.h"

namespace {

template <class Real>
class Builders : public ::testing::Test {};
TYPED_TEST_SUITE(Builders, Precisions);

constexpr int64_t kTwoSided[] = {12, 36, 24, 48};
constexpr int64_t kBoundaries[] = {1, 2, 12, 36, 24, 48, 64};

// All storages and partitions of a problem with `count` functions, closing for periodic splines.
template <class Real, class Test>
void for_all_forms(int64_t n, int64_t count, Test test) {
  for (const int64_t grid_hint : {0, 2, 4}) {
    const std::vector<Real> points = make_grid<Real>(n, grid_hint == 4 ? 0 : 0.3);
    for (const int64_t func_hint : {0, 32}) {
      std::vector<std::vector<Real>> functions;
      for (int64_t f = 0; f < count; ++f) {
        functions.push_back(random_values<Real>(n, -1, 1, unsigned(7 + f)));
        functions.back().back() = functions.back().front();
      }
      Spline<Real> spline(points, grid_hint, functions, func_hint);
      SCOPED_TRACE(::testing::Message() << "n " << n << " grid " << grid_hint << " storage " << func_hint);
      test(spline, points, functions);
    }
  }
}

// Values at both ends of each cell, and derivatives 1 to `smooth` across each breakpoint.
template <class Real>
void check_smooth(const Spline<Real>& s, const std::vector<Real>& x, const std::vector<std::vector<Real>>& y,
                  int64_t smooth, double tolerance) {
  for (int64_t f = 0; f < s.count; ++f)
    for (int64_t i = 0; i < s.cells; ++i) {
      const Real* c = s.cell(f, i);
      const long double h = (long double)x[size_t(i + 1)] - x[size_t(i)];
      ASSERT_EQ(c[0], y[size_t(f)][size_t(i)]) << f << ' ' << i;
      ASSERT_NEAR(double(derivative(c, s.order, 0, h)), y[size_t(f)][size_t(i + 1)], tolerance)
          << f << ' ' << i;
      for (int64_t k = 1; k <= smooth && i + 1 < s.cells; ++k)
        ASSERT_NEAR(double(derivative(c, s.order, k, h)), double(derivative(s.cell(f, i + 1), s.order, k, 0)),
                    tolerance)
            << f << ' ' << i << " derivative " << k;
    }
}

// The conditions at both ends of a cubic spline. Not-a-knot is a row of the system that ties the outer two
// derivatives; for the natural spline on a partition with all its points it says that the third derivative is
// continuous.
template <class Real>
void check_ends(const Spline<Real>& s, const std::vector<Real>& x, const std::vector<std::vector<Real>>& y,
                int64_t kind, bool natural, double tolerance) {
  const int64_t n = s.nx;
  const bool uniform = s.x.size() == 2;
  const auto h = [&](int64_t i) { return double(x[size_t(i + 1)]) - double(x[size_t(i)]); };
  for (int64_t f = 0; f < s.count; ++f) {
    const auto m = [&](int64_t i) {
      return (double(y[size_t(f)][size_t(i + 1)]) - y[size_t(f)][size_t(i)]) / h(i);
    };
    const auto at_left = [&](int k) { return double(derivative(s.cell(f, 0), 4, k, 0)); };
    const auto at_right = [&](int k) { return double(derivative(s.cell(f, n - 2), 4, k, h(n - 2))); };
    const auto row = [&](double d, double d_next, int64_t own, int64_t next) {
      const double a = h(own), b = h(next), both = a + b;
      if (uniform) {
        EXPECT_NEAR((natural ? 2 : 1) * d + (natural ? 1 : 2) * d_next, (m(own) + m(next)) / 2, tolerance);
      } else {
        EXPECT_NEAR(b * d + both * d_next, ((a + 2 * both) * b * m(own) + a * a * m(next)) / both, tolerance);
      }
    };
    switch (kind) {
      case ORX_DF_NOT_A_KNOT:
        row(at_left(1), s.cell(f, 1)[1], 0, 1);
        row(at_right(1), s.cell(f, n - 2)[1], n - 2, n - 3);
        if (natural && !uniform) {
          EXPECT_NEAR(s.cell(f, 0)[3], s.cell(f, 1)[3], tolerance);
          EXPECT_NEAR(s.cell(f, n - 2)[3], s.cell(f, n - 3)[3], tolerance);
        }
        break;
      case ORX_DF_FREE_END:
        EXPECT_NEAR(at_left(2), 0, tolerance);
        EXPECT_NEAR(at_right(2), 0, tolerance);
        break;
      case ORX_DF_PERIODIC:
        EXPECT_NEAR(at_left(1), at_right(1), tolerance);
        if (natural) {
          EXPECT_NEAR(at_left(2), at_right(2), tolerance);
        } else {  // as at an inner breakpoint of the Bessel spline; Hermite's caller gives the value
          const double seam = (h(n - 2) * m(0) + h(0) * m(n - 2)) / (h(0) + h(n - 2));
          EXPECT_NEAR(at_left(1), s.ints.empty() ? seam : double(s.bnds[0]), tolerance);
        }
        break;
      default:
        EXPECT_NEAR(at_left(kind & ORX_DF_FIRST_LEFT ? 1 : 2), s.bnds[0], tolerance);
        EXPECT_NEAR(at_right(kind & ORX_DF_FIRST_RIGHT ? 1 : 2), s.bnds[1], tolerance);
    }
  }
}

TYPED_TEST(Builders, Linear) {
  for (const int64_t n : {2, 9, 61, 1500}) {  // three functions: the plain loop, tiles, tiles on threads
    for_all_forms<TypeParam>(n, 3, [&](auto& s, const auto& x, const auto& y) {
      s.describe(2, 0, ORX_DF_PERIODIC);
      ASSERT_EQ(Api<TypeParam>::linear(s.task, 0, 0, 0, Threads::table(3)), 0);
      check_smooth(s, x, y, 0, 8 * kEps<TypeParam>);
      EXPECT_TRUE(Threads::counts.empty());
      s.values[0] = NAN;
      EXPECT_EQ(Api<TypeParam>::linear(s.task, 0, 0, 0, serial()), ORX_DF_ERROR_NOT_PERIODIC);
      EXPECT_EQ(Api<TypeParam>::linear(s.task, 0, 0, 1, serial()), ORX_DF_ERROR_METHOD);
    });
  }
  for_all_forms<TypeParam>(1500, 9, [&](auto& s, const auto& x, const auto& y) {
    s.describe(2, 0);
    ASSERT_EQ(Api<TypeParam>::linear(s.task, 0, 0, 0, Threads::table(4)), 0);
    check_smooth(s, x, y, 0, 8 * kEps<TypeParam>);
    EXPECT_EQ(Threads::counts, std::vector<int>{6});
  });
}

TYPED_TEST(Builders, StandardQuadratic) {
  for (const int64_t n : {2, 3, 40}) {
    for_all_forms<TypeParam>(n, 3, [&](auto& s, const auto& x, const auto& y) {
      s.describe(3, 0, ORX_DF_QUADRATIC_VALUE, {TypeParam(0.25)});
      ASSERT_EQ(Api<TypeParam>::quadratic(s.task, 0, 0, 0, serial()), 0);
      check_smooth(s, x, y, 1, 3000 * kEps<TypeParam>);  // the recurrence adds up its errors
      for (int64_t f = 0; f < s.count; ++f)
        EXPECT_NEAR(double(derivative(s.cell(f, 0), 3, 0, (double(x[1]) - x[0]) / 2)), 0.25,
                    8 * kEps<TypeParam>);
    });
  }
}

// A Subbotin spline on its knots: polynomial i around breakpoint i, joined to the next one at knot i + 1.
template <class Real>
void check_subbotin(const Spline<Real>& s, const std::vector<Real>& x,
                    const std::vector<std::vector<Real>>& y, const std::vector<Real>& knots, int64_t kind) {
  const double tolerance = 400 * kEps<Real>;
  for (int64_t f = 0; f < s.count; ++f) {
    for (int64_t i = 0; i < s.nx; ++i) ASSERT_EQ(s.cell(f, i)[0], y[size_t(f)][size_t(i)]);
    for (int64_t i = 0; i + 1 < s.nx; ++i)
      for (int k = 0; k <= 1; ++k) {
        const long double knot = knots[size_t(i + 1)];
        ASSERT_NEAR(double(derivative(s.cell(f, i), 3, k, knot - x[size_t(i)])),
                    double(derivative(s.cell(f, i + 1), 3, k, knot - x[size_t(i + 1)])), tolerance)
            << f << ' ' << i << ' ' << k;
      }
    const Real *left = s.cell(f, 0), *right = s.cell(f, s.nx - 1);
    EXPECT_NEAR(kind & 4 ? left[1] : 2 * left[2], s.bnds[0], tolerance);
    EXPECT_NEAR(kind & 8 ? right[1] : 2 * right[2], s.bnds[1], tolerance);
  }
}

TYPED_TEST(Builders, Subbotin) {
  using Real = TypeParam;
  for (const int64_t kind : kTwoSided)
    for (const int64_t n : {2, 3, 4, 50})
      for_all_forms<Real>(n, 2, [&](auto& s, const auto& x, const auto& y) {
        std::vector<Real> knots(size_t(n + 1), x[0]), even = knots;
        for (int64_t i = 0; i + 1 < n; ++i) {
          knots[size_t(i + 1)] = Real(0.4) * x[size_t(i)] + Real(0.6) * x[size_t(i + 1)];
          even[size_t(i + 1)] = Real(0.5) + Real(i);  // apart from the breakpoints, whatever their jitter
        }
        knots[size_t(n)] = even[size_t(n)] = x.back();
        const std::vector<Real> ends = {Real(0.5), Real(-0.75)};
        s.describe(3, ORX_DF_SUBBOTIN, kind, ends, ORX_DF_KNOTS, knots);
        ASSERT_EQ(Api<Real>::quadratic(s.task, 0, 0, 0, serial()), 0);
        check_subbotin(s, x, y, knots, kind);
        s.describe(3, ORX_DF_SUBBOTIN, kind, ends, ORX_DF_KNOTS | ORX_DF_UNIFORM_KNOTS,
                   {even[1], even[size_t(n - 1)]});
        ASSERT_EQ(Api<Real>::quadratic(s.task, 0, 0, 0, serial()), 0);
        check_subbotin(s, x, y, even, kind);
        // No knots: those in the middle.
        s.describe(3, ORX_DF_SUBBOTIN, kind, ends);
        ASSERT_EQ(orx_df_kernel_iEditVal(s.task, ORX_DF_INT_COND_KIND, ORX_DF_KNOTS), 0);
        ASSERT_EQ(Api<Real>::quadratic(s.task, 0, 0, 0, serial()), 0);
        for (int64_t i = 0; i + 1 < n; ++i) knots[size_t(i + 1)] = (x[size_t(i)] + x[size_t(i + 1)]) / 2;
        check_subbotin(s, x, y, knots, kind);
      });
}

template <class Real>
std::vector<Real> end_values(int64_t kind) {
  return kind > 2 ? std::vector<Real>{Real(0.5), Real(-0.75)} : std::vector<Real>{};
}

TYPED_TEST(Builders, Natural) {
  using Real = TypeParam;
  for (const int64_t kind : kBoundaries)
    for (const int64_t n : {4, 5, 33, 700})    // 3 breakpoints leave not-a-knot open
      for (const int64_t count : {1, 3, 5}) {  // one function, several, with 700 points on threads
        for_all_forms<Real>(n, count, [&](auto& s, const auto& x, const auto& y) {
          s.describe(4, ORX_DF_NATURAL, kind, end_values<Real>(kind));
          ASSERT_EQ(Api<Real>::natural(s.task, 0, 0, Threads::table(2)), 0);
          EXPECT_EQ(Threads::counts.size(), n >= 600 && count > 1);
          check_smooth(s, x, y, 2, 300 * kEps<Real>);
          check_ends(s, x, y, kind, true, 300 * kEps<Real>);
          if (count == 1) return;
          // Coefficients that do not lie evenly apart.
          std::vector<Real> apart(size_t(4 * (n - 1)));
          ASSERT_EQ(Api<Real>::edit_indexed(s.task, ORX_DF_COEFFS, 1, apart.data()), 0);
          ASSERT_EQ(Api<Real>::natural(s.task, 0, 0, serial()), 0);
          for (size_t i = 0; i < apart.size(); ++i)
            ASSERT_NEAR(apart[i], s.cell(1, 0)[i], 300 * kEps<Real>) << i;
        });
      }
  for (const int64_t kind : {2, 12, 64})
    for_all_forms<Real>(3, 2, [&](auto& s, const auto& x, const auto& y) {
      s.describe(4, ORX_DF_NATURAL, kind, end_values<Real>(kind));
      ASSERT_EQ(Api<Real>::natural(s.task, 0, 0, serial()), 0);
      check_smooth(s, x, y, 2, 300 * kEps<Real>);
      check_ends(s, x, y, kind, true, 300 * kEps<Real>);
    });
}

// Three breakpoints without a knot carry one cubic and three values: the parabola, as SciPy 1.10.1 takes it
// (scipy.interpolate.CubicSpline(x, y, bc_type="not-a-knot")).
TYPED_TEST(Builders, NaturalThroughThreePointsIsTheParabola) {
  using Real = TypeParam;
  for (const size_t count : {1u, 3u}) {
    Spline<Real> s({0, 1, 3}, 1, std::vector<std::vector<Real>>(count, {1, 2, -1}));
    s.describe(4, ORX_DF_NATURAL, ORX_DF_NOT_A_KNOT);
    ASSERT_EQ(Api<Real>::natural(s.task, 0, 0, nullptr), 0);
    const double expected[] = {1, 11.0 / 6, -5.0 / 6, 0,
                               2, 1.0 / 6,  -5.0 / 6, 0};  // c of SciPy, lowest first
    for (int64_t f = 0; f < s.count; ++f)
      for (int i = 0; i < 8; ++i) EXPECT_NEAR(s.cell(f, 0)[i], expected[i], 10 * kEps<Real>) << i;
  }
}

TYPED_TEST(Builders, DefaultWithTheSecondDerivativesOfANaturalSpline) {
  using Real = TypeParam;
  for (const int64_t kind : kBoundaries)
    for (const int64_t n : {3, 4, 33})
      for_all_forms<Real>(n, 1, [&](auto& s, const auto& x, const auto& y) {
        s.describe(4, ORX_DF_NATURAL, ORX_DF_FREE_END);
        ASSERT_EQ(Api<Real>::natural(s.task, 0, 0, serial()), 0);
        std::vector<Real> second;
        for (int64_t i = 1; i + 1 < n; ++i) second.push_back(2 * s.cell(0, i)[2]);
        s.describe(4, ORX_DF_DEFAULT, kind, end_values<Real>(kind), ORX_DF_SECOND_DERIVATIVES, second);
        ASSERT_EQ(Api<Real>::standard(s.task, 0, 0, serial()), 0);
        check_smooth(s, x, y, 0, 50 * kEps<Real>);
        for (int64_t i = 1; i + 1 < n; ++i) EXPECT_EQ(s.cell(0, i)[2], second[size_t(i - 1)] / 2);
        for (int64_t i = 0; i + 2 < n; ++i)  // the second derivative arrives where the next cell begins
          EXPECT_NEAR(double(derivative(s.cell(0, i), 4, 2, (long double)x[size_t(i + 1)] - x[size_t(i)])),
                      second[size_t(i)], 100 * kEps<Real>);
        if (kind == ORX_DF_PERIODIC) {
          EXPECT_NEAR(2 * s.cell(0, 0)[2], 0.5, 20 * kEps<Real>);
        } else if (kind == ORX_DF_NOT_A_KNOT) {
          EXPECT_EQ(s.cell(0, 0)[3], n == 3 ? 0 : s.cell(0, 1)[3]);
        } else {
          check_ends(s, x, y, kind, false, 100 * kEps<Real>);
          if (kind == ORX_DF_FREE_END) check_smooth(s, x, y, 2, 100 * kEps<Real>);
        }
      });
}

// The inner derivatives of the local builders, by their definitions.
template <class Real>
long double local_derivative(int64_t kind, const std::vector<Real>& x, const std::vector<Real>& y, int64_t i,
                             const std::vector<Real>& given) {
  const auto h = [&](int64_t k) { return (long double)x[size_t(k + 1)] - x[size_t(k)]; };
  const auto m = [&](int64_t k) { return ((long double)y[size_t(k + 1)] - y[size_t(k)]) / h(k); };
  if (kind == ORX_DF_HERMITE) return given[size_t(i - 1)];
  if (kind == ORX_DF_BESSEL) return (m(i - 1) * h(i) + m(i) * h(i - 1)) / (h(i - 1) + h(i));
  const long double across = std::fabs(m(i) - m(i - 1));
  const long double left = i == 1 ? across : std::fabs(m(i - 1) - m(i - 2));
  const long double right = i == int64_t(x.size()) - 2 ? across : std::fabs(m(i + 1) - m(i));
  return (m(i - 1) * right + m(i) * left) / (left + right);
}

TYPED_TEST(Builders, Local) {
  using Real = TypeParam;
  for (const int64_t kind : {ORX_DF_HERMITE, ORX_DF_BESSEL, ORX_DF_AKIMA})
    for (const int64_t boundary : kBoundaries)
      for (const int64_t n : {3, 5, 9, 10, 31, 102, 5000}) {
        if (kind == ORX_DF_AKIMA && n < 5) continue;
        for_all_forms<Real>(n, 5, [&](auto& s, const auto& x, const auto& y) {
          SCOPED_TRACE(::testing::Message() << "kind " << kind << " boundary " << boundary);
          const auto given = random_values<Real>(n - 2, -1, 1, 3);
          if (kind == ORX_DF_HERMITE)
            s.describe(4, kind, boundary, end_values<Real>(boundary), ORX_DF_FIRST_DERIVATIVES, given);
          else
            s.describe(4, kind, boundary, end_values<Real>(boundary));
          const auto build = kind == ORX_DF_HERMITE  ? Api<Real>::hermite
                             : kind == ORX_DF_BESSEL ? Api<Real>::bessel
                                                     : Api<Real>::akima;
          ASSERT_EQ(build(s.task, 0, 0, Threads::table(3)), 0);
          EXPECT_EQ(Threads::counts,
                    n < 103 ? std::vector<int>{} : std::vector<int>{int(2 * ((n - 3 + 2047) / 2048))});
          check_smooth(s, x, y, 1, 300 * kEps<Real>);
          check_ends(s, x, y, boundary, false, 300 * kEps<Real>);
          for (int64_t f = 0; f < s.count; ++f)
            for (int64_t i = 1; i + 1 < n; ++i)
              ASSERT_NEAR(s.cell(f, i)[1], double(local_derivative(kind, x, y[size_t(f)], i, given)),
                          100 * kEps<Real>)
                  << i;
        });
      }
}

// Where slopes change by less than 1e-10 in all, both count the same.
TYPED_TEST(Builders, AkimaNearlyEqualSlopes) {
  using Real = TypeParam;
  const Real slopes[] = {0, 1, 3, 3, 3};  // at every fifth breakpoint they change on its left alone
  for (const Real unit : {Real(0.9e-10), Real(1.1e-10)})
    for (const int64_t grid_hint : {1, 4}) {
      std::vector<Real> y(40, Real(0));
      for (size_t i = 1; i < 40; ++i) y[i] = y[i - 1] + unit * slopes[(i - 1) % 5];
      Spline<Real> s(make_grid<Real>(40, 0), grid_hint, {y});
      s.describe(4, ORX_DF_AKIMA);
      ASSERT_EQ(Api<Real>::akima(s.task, 0, 0, serial()), 0);
      for (int64_t i = 2; i < 39; i += 5)
        EXPECT_NEAR(s.cell(0, i)[1] / unit, unit < Real(1e-10) ? 2 : 3, 1e3 * kEps<Real>) << i;
    }
}

TYPED_TEST(Builders, AkimaWithoutCondition) {
  using Real = TypeParam;
  Spline<Real> s(make_grid<Real>(12, 0.3), 0, {random_values<Real>(12, -1, 1, 5)});
  s.describe(4, ORX_DF_AKIMA);
  s.coeffs[1] = Real(0.125);
  ASSERT_EQ(Api<Real>::akima(s.task, 0, 0, serial()), 0);
  EXPECT_EQ(s.coeffs[1], Real(0.125));
  EXPECT_NEAR(double(derivative(s.cell(0, 10), 4, 1, (double)s.x[11] - s.x[10])), s.cell(0, 10)[1],
              100 * kEps<Real>);
}

// The k-th derivative of 1 + x/2 - x^2/8 + x^3/64, cut off behind `degree`.
double polynomial(int degree, int k, double x) {
  double c[] = {1, 0.5, -0.125, 0.015625};
  std::fill(c + degree + 1, c + 4, 0);
  return double(derivative(c, 4, k, x));
}

TYPED_TEST(Builders, PolynomialsAreReproduced) {
  using Real = TypeParam;
  using A = Api<Real>;
  const auto linear = [](DFTask* task, int64_t, int64_t, const ThreadingServices* threads) {
    return A::linear(task, 0, 0, 0, threads);
  };
  const auto quadratic = [](DFTask* task, int64_t, int64_t, const ThreadingServices* threads) {
    return A::quadratic(task, 0, 0, 0, threads);
  };
  struct {
    int32_t (*build)(DFTask*, int64_t, int64_t, const ThreadingServices*);
    int64_t order, kind;
    int degree, given;  // which derivative the inner conditions are; 0 for knots in the middle or none
    int64_t boundary;
  } const rows[] = {{linear, 2, 0, 1, 0, 0},
                    {quadratic, 3, 0, 2, 0, ORX_DF_QUADRATIC_VALUE},
                    {quadratic, 3, ORX_DF_SUBBOTIN, 2, 0, 12},
                    {A::natural, 4, ORX_DF_NATURAL, 3, 0, 12},
                    {A::natural, 4, ORX_DF_NATURAL, 3, 0, 48},
                    {A::standard, 4, ORX_DF_DEFAULT, 3, 2, 36},
                    {A::hermite, 4, ORX_DF_HERMITE, 3, 1, 24},
                    {A::bessel, 4, ORX_DF_BESSEL, 2, 0, 48},
                    {A::akima, 4, ORX_DF_AKIMA, 1, 0, 12}};
  const int64_t n = 40;
  for (const auto& row : rows)
    for (const bool uniform : {false, true}) {
      SCOPED_TRACE(::testing::Message() << row.order << ' ' << row.kind << ' ' << row.boundary << uniform);
      const auto points = make_grid<Real>(n, uniform ? 0 : 0.3);
      std::vector<Real> x, y, inner;
      for (const Real point : points) x.push_back((point - 20) / 4);
      const auto p = [&](int k, double at) { return Real(polynomial(row.degree, k, at)); };
      for (const Real at : x) y.push_back(p(0, at));
      for (int64_t i = 1; row.given && i + 1 < n; ++i) inner.push_back(p(row.given, x[size_t(i)]));
      Spline<Real> s(x, uniform ? 4 : 1, {y});
      std::vector<Real> ends = {p(row.boundary & 4 ? 1 : 2, x[0]), p(row.boundary & 8 ? 1 : 2, x.back())};
      if (row.order == 3 && row.kind == 0) ends[0] = p(0, (x[0] + x[1]) / 2);
      s.describe(row.order, row.kind, row.boundary, ends, row.given, inner);
      if (row.kind == ORX_DF_SUBBOTIN) orx_df_kernel_iEditVal(s.task, ORX_DF_INT_COND_KIND, ORX_DF_KNOTS);
      ASSERT_EQ(row.build(s.task, 0, 0, serial()), 0);
      for (int64_t i = 0; i < s.cells; ++i)
        for (int k = 0; k < row.order; ++k)
          ASSERT_NEAR(double(derivative(s.cell(0, i), row.order, k, 0)), p(k, x[size_t(i)]),
                      20000 * kEps<Real>)
              << i << ' ' << k;
    }
}

TYPED_TEST(Builders, Statuses) {
  using Real = TypeParam;
  using A = Api<Real>;
  const auto edit = [](Spline<Real>& s, int64_t parameter, int64_t value) {
    ASSERT_EQ(orx_df_kernel_iEditVal(s.task, parameter, value), 0);
  };
  Spline<Real> s(make_grid<Real>(8, 0.3), 0, {{1, 2, 3, 4, 5, 6, 7, Real(1.0000002)}});
  const auto cubics = {A::natural, A::standard, A::hermite, A::bessel, A::akima};
  for (const auto build : cubics) {
    const bool akima = build == A::akima;
    s.describe(4, 0, 64, {1, 1});
    EXPECT_EQ(build(s.task, 0, 0, serial()), ORX_DF_ERROR_NOT_PERIODIC);
    s.describe(4, 2, 64);
    EXPECT_EQ(build(s.task, 0, 0, serial()), ORX_DF_ERROR_NOT_PERIODIC);
    s.describe(4, 0, 64);
    EXPECT_EQ(build(s.task, 0, 0, serial()), ORX_DF_ERROR_BND_CONDS);
    s.describe(4, 2);
    for (const int64_t kind : {0, 3, 8, 128}) {
      edit(s, ORX_DF_BND_COND_KIND, kind);
      const int32_t expected = akima && kind == 0 ? ORX_DF_OK : ORX_DF_ERROR_BND_COND_KIND;
      EXPECT_EQ(build(s.task, 0, 0, serial()), expected);
    }
    edit(s, ORX_DF_BND_COND_KIND, 12);
    EXPECT_EQ(build(s.task, 0, 0, serial()), ORX_DF_ERROR_BND_CONDS);
    edit(s, ORX_DF_GRID_SIZE, akima ? 4 : 2);
    EXPECT_EQ(build(s.task, 0, 0, serial()), ORX_DF_ERROR_GRID_SIZE);
    edit(s, ORX_DF_GRID_SIZE, 8);
  }
  EXPECT_EQ(A::natural(s.task, 0, 1, serial()), ORX_DF_ERROR_METHOD);

  const auto quadratic = [&] { return A::quadratic(s.task, 0, 0, 0, serial()); };
  s.describe(3, 2);
  EXPECT_EQ(quadratic(), ORX_DF_ERROR_METHOD);
  s.describe(3, 0);
  EXPECT_EQ(quadratic(), ORX_DF_ERROR_BND_COND_KIND);
  edit(s, ORX_DF_BND_COND_KIND, 128);
  EXPECT_EQ(quadratic(), ORX_DF_ERROR_BND_CONDS);
  s.describe(3, 1);
  EXPECT_EQ(quadratic(), ORX_DF_ERROR_INT_COND_KIND);
  edit(s, ORX_DF_INT_COND_KIND, 8);
  for (const int64_t kind : {0, 1, 2, 3, 64}) {  // 1, 2 and 64 are the empty slots of the table
    edit(s, ORX_DF_BND_COND_KIND, kind);
    EXPECT_EQ(quadratic(), ORX_DF_ERROR_BND_COND_KIND);
  }
  edit(s, ORX_DF_BND_COND_KIND, 48);
  EXPECT_EQ(quadratic(), ORX_DF_ERROR_BND_CONDS);

  // A storage hint that no editor lets in.
  orx::df::Task<Real>::of(s.task)->funcHint = 64;
  for (const auto build : cubics) EXPECT_EQ(build(s.task, 0, 0, serial()), ORX_DF_ERROR_FUNC_HINT);
  EXPECT_EQ(A::linear(s.task, 0, 0, 0, serial()), ORX_DF_ERROR_FUNC_HINT);
  EXPECT_EQ(quadratic(), ORX_DF_ERROR_FUNC_HINT);
}

// Errors that are found with scratch in hand: knots that do not lie one between each two breakpoints; equal
// breakpoints.
TYPED_TEST(Builders, ErrorsLeaveNoScratch) {
  using Real = TypeParam;
  using A = Api<Real>;
  const std::vector<Real> good = {0, Real(0.5), Real(1.5), Real(2.5), 3};
  Spline<Real> s({0, 1, 2, 3}, 1, {{1, 2, 3, 4}});
  const auto subbotin = [&](int64_t int_kind, const std::vector<Real>& knots) {
    s.describe(3, ORX_DF_SUBBOTIN, 12, {0, 0}, int_kind, knots);
    return A::quadratic(s.task, 0, 0, 0, serial());
  };
  EXPECT_EQ(subbotin(ORX_DF_KNOTS, good), 0);
  const std::pair<size_t, Real> bad[] = {{0, Real(0.25)}, {4, Real(3.5)}, {2, 1}, {2, 2}, {2, Real(0.75)}};
  for (const auto& [place, value] : bad) {
    auto knots = good;
    knots[place] = value;
    EXPECT_EQ(without_loss([&] { return subbotin(ORX_DF_KNOTS, knots); }), ORX_DF_ERROR_INT_CONDS);
  }
  for (const auto& ends : {std::vector<Real>{0, Real(2.5)}, {Real(0.5), 3}, {1, Real(2.5)}})
    EXPECT_EQ(without_loss([&] { return subbotin(ORX_DF_KNOTS | ORX_DF_UNIFORM_KNOTS, ends); }),
              ORX_DF_ERROR_INT_CONDS);
  for (const size_t count : {1u, 2u}) {
    Spline<Real> equal({0, 1, 1, 2}, 1, std::vector<std::vector<Real>>(count, {1, 2, 3, 4}));
    equal.describe(4, ORX_DF_NATURAL, ORX_DF_NOT_A_KNOT);
    EXPECT_EQ(without_loss([&] { return A::natural(equal.task, 0, 0, serial()); }), ORX_DF_ERROR_SINGULAR);
  }
  std::vector<std::vector<Real>> y(2, std::vector<Real>(600, 1));
  y[1].back() = 2;
  Spline<Real> open(make_grid<Real>(600, 0.3), 1, y);
  open.describe(4, ORX_DF_NATURAL, ORX_DF_PERIODIC);
  EXPECT_EQ(without_loss([&] { return A::natural(open.task, 0, 0, Threads::table(2)); }),
            ORX_DF_ERROR_NOT_PERIODIC);
}

TYPED_TEST(Builders, EachAllocationFailing) {
  using Real = TypeParam;
  using A = Api<Real>;
  const int64_t n = 5000;
  std::vector<std::vector<Real>> y(3, random_values<Real>(n, -1, 1, 1));
  Spline<Real> s(make_grid<Real>(n, 0.3), 0, y);
  const auto threads = Threads::table(2);
  s.describe(4, 2, 2);
  EXPECT_EQ(fail_each_allocation(ORX_DF_ERROR_MEMORY, [&] { return A::natural(s.task, 0, 0, threads); }), 2);
  EXPECT_EQ(fail_each_allocation(ORX_DF_ERROR_MEMORY, [&] { return A::natural(s.task, 0, 0, serial()); }), 1);
  EXPECT_EQ(fail_each_allocation(ORX_DF_ERROR_MEMORY, [&] { return A::bessel(s.task, 0, 0, threads); }), 1);
  EXPECT_EQ(fail_each_allocation(ORX_DF_ERROR_MEMORY, [&] { return A::akima(s.task, 0, 0, threads); }), 1);
  s.describe(4, 0, 2, {}, 1, random_values<Real>(n - 2, -1, 1, 2));
  EXPECT_EQ(fail_each_allocation(ORX_DF_ERROR_MEMORY, [&] { return A::standard(s.task, 0, 0, threads); }), 1);
  EXPECT_EQ(fail_each_allocation(ORX_DF_ERROR_MEMORY, [&] { return A::hermite(s.task, 0, 0, threads); }), 1);
  s.describe(3, 0, 128, {0});
  EXPECT_EQ(fail_each_allocation(ORX_DF_ERROR_MEMORY, [&] { return A::quadratic(s.task, 0, 0, 0, threads); }),
            1);
  s.describe(3, 1, 48, {0, 0});
  orx_df_kernel_iEditVal(s.task, ORX_DF_INT_COND_KIND, 8);
  EXPECT_EQ(fail_each_allocation(ORX_DF_ERROR_MEMORY, [&] { return A::quadratic(s.task, 0, 0, 0, threads); }),
            1);
}

}  // namespace
