#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "orx/serv.h"

extern "C" void dgtsv_(const int* n, const int* nrhs, double* dl, double* d, double* du, double* b,
                       const int* ldb, int* info);

namespace {

template <class T>
struct Routines;
template <>
struct Routines<double> {
  static constexpr auto trfb = ddttrfb_4dfl;
  static constexpr auto trsb = ddttrsb_4dfl;
  static constexpr auto tsvb = ddtsvb_4dfl;
};
template <>
struct Routines<float> {
  static constexpr auto trfb = sdttrfb_4dfl;
  static constexpr auto trsb = sdttrsb_4dfl;
  static constexpr auto tsvb = sdtsvb_4dfl;
};

// A system of order n with `nrhs` right sides, two rows of padding below each; diagonally dominant by rows
// and by columns.
template <class T>
struct System {
  int n, nrhs, ldb;
  std::vector<T> dl, d, du, b;

  System(int order, int sides, std::mt19937& random)
      : n(order), nrhs(sides), ldb(order + 2), dl(n > 0 ? n - 1 : 0), d(n), du(dl), b(size_t(ldb) * sides) {
    std::uniform_real_distribution<T> off(-1, 1), add(0.25, 3);
    for (T& x : dl) x = off(random);
    for (T& x : du) x = off(random);
    for (T& x : b) x = off(random);
    for (int i = 0; i < n; ++i) {
      T row = 0, column = 0;
      if (i > 0) row += std::fabs(dl[i - 1]), column += std::fabs(du[i - 1]);
      if (i < n - 1) row += std::fabs(du[i]), column += std::fabs(dl[i]);
      d[i] = (std::max(row, column) + add(random)) * (off(random) < 0 ? -1 : 1);
    }
  }

  int factor() {
    int info = -99;
    Routines<T>::trfb(&n, dl.data(), d.data(), du.data(), &info);
    return info;
  }
  int solve_factored(char trans, int sides, T* first) const {
    int info = -99;
    Routines<T>::trsb(&trans, &n, &sides, dl.data(), d.data(), du.data(), first, &ldb, &info);
    return info;
  }
  int solve() {
    int info = -99;
    Routines<T>::tsvb(&n, &nrhs, dl.data(), d.data(), du.data(), b.data(), &ldb, &info);
    return info;
  }
};

// One column by LAPACK, which exchanges rows, in double.
template <class T>
std::vector<double> lapack_solution(const System<T>& s, bool transposed, int column) {
  std::vector<double> dl(s.dl.begin(), s.dl.end()), d(s.d.begin(), s.d.end()), du(s.du.begin(), s.du.end());
  const auto first = s.b.begin() + column * s.ldb;
  std::vector<double> x(first, first + s.n);
  if (transposed) dl.swap(du);
  int one = 1, info = -99;
  dgtsv_(&s.n, &one, dl.data(), d.data(), du.data(), x.data(), &s.n, &info);
  EXPECT_EQ(info, 0);
  return x;
}

// The matrix has a row surplus of at least 1/4, so its inverse is below 4 and the error a few units of that.
template <class T>
void expect_solved(const System<T>& s, bool transposed, const std::vector<T>& x) {
  for (int k = 0; k < s.nrhs; ++k) {
    const auto reference = lapack_solution(s, transposed, k);
    for (int i = 0; i < s.n; ++i)
      EXPECT_NEAR(x[i + size_t(k) * s.ldb], T(reference[i]), 40 * std::numeric_limits<T>::epsilon())
          << i << ',' << k;
    for (int i = s.n; i < s.ldb; ++i) EXPECT_EQ(x[i + size_t(k) * s.ldb], s.b[i + size_t(k) * s.ldb]);
  }
}

template <class T>
class Tridiagonal : public testing::Test {
 protected:
  std::mt19937 random{20};
};
using Types = testing::Types<double, float>;
TYPED_TEST_SUITE(Tridiagonal, Types);

}  // namespace

TYPED_TEST(Tridiagonal, SolvesAsLapackDoes) {
  for (int n : {1, 2, 3, 4, 5, 6, 7, 8, 33, 34, 100})
    for (int nrhs : {1, 2, 3, 4, 5, 8, 11}) {
      SCOPED_TRACE(testing::Message() << "n " << n << ", right sides " << nrhs);
      const System<TypeParam> system(n, nrhs, this->random);
      auto at_once = system, factored = system;
      ASSERT_EQ(at_once.solve(), 0);
      expect_solved(system, false, at_once.b);
      ASSERT_EQ(factored.factor(), 0);
      for (char trans : {'N', 'T', 'C'}) {
        auto x = system.b;
        ASSERT_EQ(factored.solve_factored(trans, nrhs, x.data()), 0);
        expect_solved(system, trans != 'N', x);
      }
    }
}

TYPED_TEST(Tridiagonal, BitsDependNeitherOnCompanyNorOnRoutine) {
  for (int n : {1, 2, 9, 1000}) {
    System<TypeParam> at_once(n, 7, this->random), factored = at_once;
    ASSERT_EQ(at_once.solve(), 0);
    ASSERT_EQ(factored.factor(), 0);
    auto together = factored.b, alone = factored.b;
    ASSERT_EQ(factored.solve_factored('n', 7, together.data()), 0);
    for (int k = 0; k < 7; ++k) ASSERT_EQ(factored.solve_factored('N', 1, &alone[k * factored.ldb]), 0);
    EXPECT_EQ(together, alone);
    EXPECT_EQ(together, at_once.b);
  }
}

TYPED_TEST(Tridiagonal, TellsTheRowOfAZeroPivot) {
  for (int n = 1; n <= 9; ++n)
    for (int zero = 0; zero < n; ++zero) {
      System<TypeParam> diagonal(n, 2, this->random);
      for (auto* side : {&diagonal.dl, &diagonal.du}) side->assign(side->size(), 0);
      diagonal.d[zero] = 0;
      auto copy = diagonal;
      EXPECT_EQ(diagonal.factor(), zero + 1);
      EXPECT_EQ(copy.solve(), zero + 1);
    }
  // Singular by equal elements: the last pivot must come out as exactly 0, whatever the quotients round to.
  for (int k = 1; k < 50; ++k) {
    System<TypeParam> singular(3, 1, this->random);
    const TypeParam g = TypeParam(0.7), h = TypeParam(k) / 10, sum = g + h;
    singular.dl = {h, sum};
    singular.d = {h, 2 * sum, g};
    singular.du = {sum, g};
    EXPECT_GT(singular.factor(), 0) << h;
  }
}

TYPED_TEST(Tridiagonal, RefusesBadArgumentsAndTakesEmptyOnes) {
  System<TypeParam> system(3, 2, this->random), before = system;
  const auto refused = [&](int n, int nrhs, int ldb, char trans) {
    auto s = system;
    s.n = n, s.nrhs = nrhs, s.ldb = ldb;
    return std::vector<int>{s.factor(), s.solve_factored(trans, nrhs, s.b.data()), s.solve()};
  };
  EXPECT_EQ(refused(3, 2, 5, 'X'), (std::vector<int>{0, -1, 0}));
  EXPECT_EQ(refused(-1, 2, 5, 'N'), (std::vector<int>{-1, -2, -1}));
  EXPECT_EQ(refused(3, -1, 5, 'N'), (std::vector<int>{0, -3, -2}));
  EXPECT_EQ(refused(3, 2, 2, 'N'), (std::vector<int>{0, -8, -7}));
  EXPECT_EQ(refused(0, 2, 0, 'N'), (std::vector<int>{0, -8, -7}));
  EXPECT_EQ(refused(0, 2, 1, 'N'), (std::vector<int>{0, 0, 0}));

  system.nrhs = 0;
  EXPECT_EQ(system.solve(), 0);  // factors alone
  EXPECT_EQ(system.b, before.b);
  EXPECT_EQ(before.factor(), 0);
  EXPECT_EQ(system.d, before.d);
}
