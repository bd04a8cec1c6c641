// Integration beside sums of polynomials in extended precision: all kinds, swapped and outer limits,
// call-backs, statuses.
#include <numeric>

#include "fixture.h"

namespace {

template <class Real>
class Integration : public ::testing::Test {};
TYPED_TEST_SUITE(Integration, Precisions);

// The integral from 0 to t of n coefficients.
template <class Real>
long double primitive(const Real* c, int64_t n, long double t) {
  long double sum = 0;
  for (int64_t k = n - 1; k >= 0; --k) sum = sum * t + (long double)c[k] / (long double)(k + 1);
  return sum * t;
}

// A piecewise polynomial for the judge: piece p begins at start[p], the first and the last reach to infinity.
struct Pieces {
  std::vector<long double> start, base;
  std::vector<std::vector<long double>> coeffs;

  long double integral(long double a, long double b) const {
    if (b < a) return -integral(b, a);
    long double sum = 0;
    for (size_t p = 0; p < base.size(); ++p) {
      const long double from = p == 0 ? a : std::max(a, start[p]);
      const long double to = p + 1 == base.size() ? b : std::min(b, start[p + 1]);
      if (from >= to) continue;
      const auto n = int64_t(coeffs[p].size());
      sum += primitive(coeffs[p].data(), n, to - base[p]) - primitive(coeffs[p].data(), n, from - base[p]);
    }
    return sum;
  }
};

template <class Real>
Pieces pieces_of(const Spline<Real>& s, const std::vector<Real>& x, int64_t kind, int64_t f) {
  Pieces pieces;
  const auto add = [&](long double start, long double base, const Real* c, int64_t n) {
    pieces.start.push_back(start);
    pieces.base.push_back(base);
    pieces.coeffs.emplace_back(c, c + n);
  };
  for (int64_t p = 0; p < (s.order == 0 ? s.nx : s.cells); ++p) {
    const long double here = x[size_t(p)], before = p == 0 ? here : (long double)x[size_t(p - 1)];
    const Real* value = &s.values[s.at(ORX_DF_ROWS, f, p)];
    if (s.order == 0)
      add(kind == ORX_DF_STEP_LEFT_CONTINUOUS ? before : here, here, value, 1);
    else
      add(kind == ORX_DF_SUBBOTIN ? (before + here) / 2 : here, here, s.cell(f, p), s.order);
  }
  return pieces;
}

constexpr struct {
  int64_t order, kind;
} kSplines[] = {{2, 0}, {3, 0}, {3, 1}, {4, 2}, {5, 0}, {9, 0}, {0, 7}, {0, 8}};

TYPED_TEST(Integration, AllKinds) {
  using Real = TypeParam;
  const int64_t nx = 41;
  for (const auto& [order, kind] : kSplines)
    for (const int64_t grid_hint : {1, 2, 4})
      for (const int64_t n : {1, 100, 255, 256, 1500}) {
        SCOPED_TRACE(::testing::Message() << order << ' ' << kind << " grid " << grid_hint << " n " << n);
        const auto x = make_grid<Real>(nx, grid_hint == 4 ? 0 : 0.3);
        Spline<Real> s(x, grid_hint, {random_values<Real>(nx, -1, 1, 4), random_values<Real>(nx, -1, 1, 5)});
        s.describe(order, kind);
        if (order) {
          s.coeffs = random_values<Real>(int64_t(s.coeffs.size()), -1, 1, 9);
          ASSERT_EQ(Api<Real>::edit_pointer(s.task, ORX_DF_COEFFS, s.coeffs.data()), 0);
        }
        auto a = random_values<Real>(n, -0.7, 40.7, 1), b = random_values<Real>(n, -0.7, 40.7, 2);
        for (size_t i = 0; i < a.size(); i += 10) {
          a[i] = x[i % size_t(nx)];
          b[i] = i % 20 ? a[i] : x[i * 7 % size_t(nx)];
        }
        std::vector<Real> result, backward, sorted, tail;
        ASSERT_EQ(s.integrate(a, b, result, 0, 0, Threads::table(2)), 0);
        EXPECT_EQ(Threads::counts, n < 256   ? std::vector<int>{}
                                   : n < 512 ? (std::vector<int>{int(n / 128)})
                                             : (std::vector<int>{int(n / 512), int(n % 512 / 128)}));
        for (int64_t f = 0; f < 2; ++f) {
          const Pieces judge = pieces_of(s, x, kind, f);
          for (size_t i = 0; i < a.size(); ++i) {
            const auto expected = double(judge.integral(a[i], b[i]));
            ASSERT_NEAR(double(result[size_t(f) * a.size() + i]), expected, 400 * kEps<Real>)
                << a[i] << ' ' << b[i];
            ASSERT_TRUE(a[i] != b[i] || result[size_t(f) * a.size() + i] == 0);
          }
        }
        ASSERT_EQ(s.integrate(b, a, backward), 0);
        for (size_t i = 0; i < result.size(); ++i) ASSERT_EQ(backward[i], -result[i]);
        std::sort(a.begin(), a.end());
        std::sort(b.begin(), b.end());
        ASSERT_EQ(s.integrate(a, b, result), 0);
        ASSERT_EQ(s.integrate(a, b, sorted, 64, 64, Threads::table(2)), 0);
        EXPECT_TRUE(Threads::counts.empty());
        EXPECT_EQ(sorted, result);
        // What lies between adds up.
        ASSERT_EQ(s.integrate(b, std::vector<Real>(b.size(), Real(20.3)), tail), 0);
        ASSERT_EQ(s.integrate(a, std::vector<Real>(b.size(), Real(20.3)), backward), 0);
        for (size_t i = 0; i < tail.size(); ++i)
          ASSERT_NEAR(result[i] + tail[i], backward[i], 400 * kEps<Real>);
      }
}

// Many intervals over many pieces, which are then differences of sums: beside long sums, with pieces that are
// greater by far elsewhere, with one that is infinite, and where memory for the sums cannot be had.
TYPED_TEST(Integration, ManyPiecesManyTimes) {
  using Real = TypeParam;
  const int64_t nx = 3000;
  for (const auto& [order, kind] : kSplines)
    for (const int64_t grid_hint : {1, 4}) {
      SCOPED_TRACE(::testing::Message() << order << ' ' << kind << " grid " << grid_hint);
      const auto x = make_grid<Real>(nx, grid_hint == 4 ? 0 : 0.3);
      auto y = random_values<Real>(nx, 0.5, 1.5, 4);
      for (size_t i = 0; i < 400; ++i) y[i] *= Real(1e9);
      for (size_t i = 1000; i < 2000; ++i) y[i] *= i % 2 ? Real(1e9) : Real(-1e9);
      Spline<Real> s(x, grid_hint, {y, y});
      s.describe(order, kind);
      for (int64_t f = 0; f < s.count; ++f)
        for (int64_t i = 0; i < s.cells; ++i)
          for (int64_t k = 0; k < order; ++k)
            s.coeffs[size_t((f * s.cells + i) * order + k)] = y[size_t(std::min(i, nx - 1))] / Real(1 << k);
      std::vector<Real> a = random_values<Real>(60, -1, 3000, 1), b = random_values<Real>(60, -1, 3000, 2);
      for (size_t i = 0; i < 40; ++i) {  // away from what is great
        a[i] = Real(2001 + (a[i] + 1) / 3);
        b[i] = Real(2001 + (b[i] + 1) / 3);
      }
      const auto check = [&] {
        std::vector<Real> result;
        ASSERT_EQ(without_loss([&] { return s.integrate(a, b, result, 0, 0, nullptr); }), 0);
        const Pieces judge = pieces_of(s, x, kind, 1);
        Pieces sizes = judge;
        for (auto& c : sizes.coeffs)
          for (auto& each : c) each = std::fabs(each);
        for (size_t i = 0; i < a.size(); ++i) {
          const auto [low, high] = std::minmax(a[i], b[i]);
          const double slack =
              200 * kEps<Real> * double(sizes.integral(low, high) + fabsl(sizes.integral(low, low + 1)));
          ASSERT_NEAR(double(result[60 + i]), double(judge.integral(a[i], b[i])), std::fabs(slack))
              << a[i] << ' ' << b[i];
        }
      };
      check();
      orx_serv_fail_allocation(1);
      check();
      orx_serv_fail_allocation(0);
      for (Real& value : s.coeffs) value = std::fabs(value) > 1e8 ? Real(INFINITY) : value;
      for (Real& value : s.values) value = std::fabs(value) > 1e8 ? Real(INFINITY) : value;
      std::vector<Real> result;
      ASSERT_EQ(s.integrate(a, b, result), 0);
      for (size_t i = 0; i < 40; ++i) ASSERT_TRUE(std::isfinite(result[i]));
      EXPECT_TRUE(!std::isfinite(result[40]) || std::min(a[40], b[40]) > 1999);
    }
}

// A few small pieces behind sums that are so great that their difference is lost: after one great piece come
// many whose digits are all rounding errors of the sum, which make these inexact in their turn.
TYPED_TEST(Integration, SmallPiecesBehindGreatSums) {
  using Real = TypeParam;
  const int64_t nx = 60000, small = nx - 20;
  const Real great = Real(0x1p100), less = Real(sizeof(Real) == 8 ? 0x1p48 : 0x1p21);
  auto y = random_values<Real>(nx, 0.5, 1, 1);
  for (int64_t i = 0; i < nx; ++i) y[size_t(i)] *= i == 1 ? great : i < small ? Real(0x1p45) : less;
  Spline<Real> s(make_grid<Real>(nx, 0), ORX_DF_UNIFORM_PARTITION, {y});
  s.describe(ORX_DF_STEPWISE, ORX_DF_STEP_RIGHT_CONTINUOUS);
  std::vector<Real> a(8, Real(0)), b(8, Real(nx - 1)), result;
  a[7] = Real(small), b[7] = Real(small + 12);
  ASSERT_EQ(s.integrate(a, b, result), 0);
  const auto first = y.begin() + int(small);
  const long double expected = std::accumulate(first, first + 12, 0.0L);
  EXPECT_NEAR(double(result[7] / expected), 1, 4 * kEps<Real>);
}

// Calls noted: what was asked, in cells and limits.
struct Call {
  char part;
  int64_t lower_cell, upper_cell;
  double lower, upper;
};
struct Notes {
  char part;
  std::vector<Call>* calls;
  int32_t status = 0;
};

template <class Real>
int32_t note(const int64_t* count, const int64_t* lower_cell, const Real* lower, const int64_t* upper_cell,
             const Real* upper, Real* result, void* params) {
  const auto* notes = static_cast<Notes*>(params);
  EXPECT_EQ(*count, 1);
  notes->calls->push_back({notes->part, *lower_cell, *upper_cell, double(*lower), double(*upper)});
  *result = Real(notes->part == 'l' ? 1 : notes->part == 'i' ? 10 : 100);
  return notes->status;
}

TYPED_TEST(Integration, CallBacks) {
  using Real = TypeParam;
  const std::vector<Real> x = {0, 1, 2, 3};
  Spline<Real> s(x, 0, {{1, 1, 1, 1}});
  s.describe(2, 0);
  ASSERT_EQ(Api<Real>::linear(s.task, 0, 0, 0, serial()), 0);
  std::vector<Call> calls;
  Notes left{'l', &calls}, inside{'i', &calls}, right{'r', &calls};
  const auto integrate = [&](Real a, Real b, int given) {
    Real result = -77;
    calls.clear();
    const int32_t status =
        Api<Real>::integrate(s.task, 0, 1, &a, 0, &b, 0, nullptr, nullptr, &result, 0,
                             given & 1 ? note<Real> : nullptr, &left, given & 4 ? note<Real> : nullptr,
                             &right, given & 2 ? note<Real> : nullptr, &inside, nullptr, nullptr, serial());
    return status ? Real(status) : result;
  };
  EXPECT_EQ(integrate(-2, 5, 7), 111);
  ASSERT_EQ(calls.size(), 3u);
  EXPECT_TRUE(calls[0].lower == -2 && calls[0].upper == 0 && calls[0].lower_cell == 0 &&
              calls[0].upper_cell == 1);
  EXPECT_TRUE(calls[1].lower == 3 && calls[1].upper == 5 && calls[1].lower_cell == 4 &&
              calls[1].upper_cell == 4);
  EXPECT_TRUE(calls[2].lower == 0 && calls[2].upper == 3 && calls[2].lower_cell == 1 &&
              calls[2].upper_cell == 4);
  EXPECT_EQ(integrate(5, -2, 7), -111);
  EXPECT_EQ(integrate(-2, 5, 5), 104);
  EXPECT_EQ(integrate(-2, 5, 1), 6);
  EXPECT_EQ(integrate(-2, 5, 2), 14);
  EXPECT_EQ(integrate(-2, -1, 7), 1);
  EXPECT_EQ(integrate(-2, -1, 6), 1);  // the first polynomial goes on
  EXPECT_EQ(integrate(4, 6, 7), 100);
  EXPECT_EQ(integrate(4, 6, 0), 2);
  EXPECT_EQ(integrate(-2, -2, 7), 0);
  EXPECT_TRUE(calls.empty());
  left.status = -5;
  EXPECT_EQ(integrate(-2, 5, 7), -5);
  // Without a spline the call-backs do all, or nobody does.
  left.status = 0;
  s.describe(0, 0);
  EXPECT_EQ(integrate(-2, 5, 7), 111);
  EXPECT_EQ(integrate(-2, 5, 5), ORX_DF_ERROR_SPLINE_KIND);
}

TYPED_TEST(Integration, Statuses) {
  using Real = TypeParam;
  const auto x = make_grid<Real>(20, 0.3);
  Spline<Real> s(x, 0, {std::vector<Real>(20), std::vector<Real>(20)}, ORX_DF_FIRST_ONLY);
  const auto status = [&](int64_t hint, const Real* left_data, const Real* right_data, int64_t right_hint) {
    const Real a = 1, b = 2;
    Real result[2];
    return Api<Real>::integrate(s.task, 0, 1, &a, 0, &b, right_hint, left_data, right_data, result, hint,
                                nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                serial());
  };
  struct {
    int64_t order, kind;
  } const bad[] = {{0, 6}, {0, 0}, {1, 0}, {3, 2}, {4, 1}, {4, 6}};
  for (const auto& [order, kind] : bad) {
    s.describe(order, kind);
    EXPECT_EQ(status(0, nullptr, nullptr, 0), ORX_DF_ERROR_SPLINE_KIND) << order << ' ' << kind;
  }
  s.describe(2, 0);
  EXPECT_EQ(status(0, nullptr, nullptr, 0),
            ORX_DF_ERROR_FUNCS);  // the second function's values were never given
  ASSERT_EQ(Api<Real>::edit_indexed(s.task, ORX_DF_FUNCS, 1, s.values.data()), 0);
  for (const int64_t hint : {0, 16, 32, 128}) EXPECT_EQ(status(hint, nullptr, nullptr, 0), 0);
  const Real wrong[5] = {0, 2, 0, 0, 0};
  EXPECT_EQ(status(1, wrong, nullptr, 0), ORX_DF_ERROR_DATA_HINT);
  EXPECT_EQ(status(1, nullptr, wrong, 0), ORX_DF_ERROR_DATA_HINT);
  EXPECT_EQ(status(0, nullptr, wrong, 64), 0);
  EXPECT_EQ(status(1, nullptr, nullptr, 0), ORX_DF_ERROR_RESULT_HINT);
  ASSERT_EQ(Api<Real>::edit_spline(s.task, 2, 0, 0, nullptr, 0, nullptr, s.coeffs.data(), ORX_DF_FIRST_ONLY),
            0);
  EXPECT_EQ(status(0, nullptr, nullptr, 0), ORX_DF_ERROR_COEFFS);
}

}  // namespace
