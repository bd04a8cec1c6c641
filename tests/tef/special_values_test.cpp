// Results and status of special arguments, in every class, alone and among ordinary elements.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "functions.h"

namespace {

template <class T>
struct special {
  const char* function;
  T x;
  T result;  // NaN: any NaN; `finite`: any finite value
  int status;
};

constexpr double finite = 12345.0;
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double denormal = 4.9406564584124654e-324;
constexpr float finf = std::numeric_limits<float>::infinity();
constexpr float fnan = std::numeric_limits<float>::quiet_NaN();
constexpr float fdenormal = 1.40129846e-45f;

const special<double> doubles[] = {
    {"dExp", 0, 1, 0},
    {"dExp", -0.0, 1, 0},
    {"dExp", -inf, 0, 0},
    {"dExp", inf, inf, 0},
    {"dExp", nan, nan, 0},
    {"dExp", 710, inf, StatusOverflow},
    {"dExp", -746, 0, StatusUnderflow},
    {"dExp", -710, finite, StatusUnderflow},
    {"dExp", 709.7, finite, 0},
    {"dExp", -708.396, finite, 0},
    {"dExp", denormal, 1, 0},
    {"dExpm1", 0, 0, 0},
    {"dExpm1", -0.0, -0.0, 0},
    {"dExpm1", -800, -1, 0},
    {"dExpm1", -inf, -1, 0},
    {"dExpm1", inf, inf, 0},
    {"dExpm1", nan, nan, 0},
    {"dExpm1", 710, inf, StatusOverflow},
    {"dExpm1", 709.7, finite, 0},
    {"dExpm1", denormal, denormal, 0},
    {"dLn", 1, 0, 0},
    {"dLn", 0, -inf, StatusSingularity},
    {"dLn", -0.0, -inf, StatusSingularity},
    {"dLn", -1, nan, StatusDomain},
    {"dLn", -inf, nan, StatusDomain},
    {"dLn", inf, inf, 0},
    {"dLn", nan, nan, 0},
    {"dLn", denormal, -744.44007192138126, 0},
    {"dLn", -denormal, nan, StatusDomain},
    {"dLog10", 1, 0, 0},
    {"dLog10", 0, -inf, StatusSingularity},
    {"dLog10", -3, nan, StatusDomain},
    {"dLog10", inf, inf, 0},
    {"dLog10", nan, nan, 0},
    {"dLog10", -inf, nan, StatusDomain},
    {"dLog10", denormal, finite, 0},
    {"dLog1p", 0, 0, 0},
    {"dLog1p", -0.0, -0.0, 0},
    {"dLog1p", -1, -inf, StatusSingularity},
    {"dLog1p", -1.5, nan, StatusDomain},
    {"dLog1p", -inf, nan, StatusDomain},
    {"dLog1p", inf, inf, 0},
    {"dLog1p", nan, nan, 0},
    {"dLog1p", 1e308, finite, 0},
    {"dLog1p", denormal, denormal, 0},
};

const special<float> singles[] = {
    {"sExp", 0, 1, 0},
    {"sExp", -finf, 0, 0},
    {"sExp", finf, finf, 0},
    {"sExp", fnan, fnan, 0},
    {"sExp", 89, finf, StatusOverflow},
    {"sExp", -104, 0, StatusUnderflow},
    {"sExp", -88, finite, StatusUnderflow},
    {"sExp", 88.7f, finite, 0},
    {"sExpm1", -0.0f, -0.0f, 0},
    {"sExpm1", -100, -1, 0},
    {"sExpm1", 89, finf, StatusOverflow},
    {"sExpm1", -finf, -1, 0},
    {"sExpm1", fnan, fnan, 0},
    {"sExpm1", 88.7f, finite, 0},
    {"sLn", 1, 0, 0},
    {"sLn", 0, -finf, StatusSingularity},
    {"sLn", -0.0f, -finf, StatusSingularity},
    {"sLn", -1, fnan, StatusDomain},
    {"sLn", finf, finf, 0},
    {"sLn", -finf, fnan, StatusDomain},
    {"sLn", fnan, fnan, 0},
    {"sLn", fdenormal, -103.278929903f, 0},
    {"sLn", 3.4e38f, finite, 0},
    {"sLog10", 1, 0, 0},
    {"sLog10", 0, -finf, StatusSingularity},
    {"sLog10", -1, fnan, StatusDomain},
    {"sLog10", fnan, fnan, 0},
    {"sLog10", finf, finf, 0},
    {"sLog1p", -0.0f, -0.0f, 0},
    {"sLog1p", -1, -finf, StatusSingularity},
    {"sLog1p", -2, fnan, StatusDomain},
    {"sLog1p", finf, finf, 0},
    {"sLog1p", fnan, fnan, 0},
    {"sLog1p", 3e38f, finite, 0},
    {"sLog1p", fdenormal, fdenormal, 0},
};

template <class T>
bool matches(T got, T expected) {
  if (std::isnan(expected)) return std::isnan(got);
  if (expected == static_cast<T>(finite)) return std::isfinite(got);
  if (!std::isfinite(expected) || expected == 0) return std::memcmp(&got, &expected, sizeof got) == 0;
  return std::fabs(got - expected) <= std::fabs(expected) * T(0x1p-11);
}

int errors;
int last_index;
int count_errors(TefErrorContext* e) {
  ++errors;
  last_index = e->index;
  return 0;
}

template <class T, size_t N>
void check(const special<T> (&cases)[N]) {
  const test::tef_state state;
  _tefSetMode(TEF_ERRMODE_CALLBACK);
  _tefSetErrorCallBack(count_errors);
  for (const auto& c : cases)
    for (const auto& f : test::unary_functions<T>()) {
      if (f.name != c.function) continue;
      for (int index = 0; index < 3; ++index)
        for (int place : {0, 9, 20, 44}) {  // in the head, the main part and the tail of 45 elements
          T a[45], r[45];
          for (T& x : a) x = T(0.5);
          a[place] = c.x;
          errors = 0;
          _tefClearErrStatus();
          f.ttab[index](45, a, r);
          EXPECT_TRUE(matches(r[place], c.result)) << c.function << "(" << c.x << ") = " << r[place];
          EXPECT_EQ(_tefGetErrStatus(), c.status) << c.function << "(" << c.x << ")";
          EXPECT_EQ(errors, c.status != 0);
          if (c.status) {
            EXPECT_EQ(last_index, place);
          }
        }
    }
}

TEST(SpecialValues, Doubles) { check(doubles); }
TEST(SpecialValues, Singles) { check(singles); }

// With flushing on, a denormal argument is zero.
TEST(SpecialValues, DenormalArgumentsUnderFlush) {
  const test::tef_state state;
  _tefSetMode(TEF_FLUSH_ON | TEF_ERRMODE_IGNORE);
  const double a[2] = {denormal, -denormal};
  double r[2];
  _tefdLn(2, a, r);
  EXPECT_EQ(r[0], -inf);
  EXPECT_EQ(r[1], -inf);
  EXPECT_EQ(_tefGetErrStatus(), StatusSingularity);
  const double b[1] = {-720};
  _tefdExp(1, b, r);
  EXPECT_EQ(r[0], 0.0);
  _tefSetMode(TEF_FLUSH_OFF);
}

}  // namespace
