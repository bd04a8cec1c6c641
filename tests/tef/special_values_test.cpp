// Results and status of special arguments, in every class, alone and among ordinary elements.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "functions.h"

namespace {

template <class T>
struct Special {
  const char* function;
  T x;
  T result;  // NaN: any NaN; `kFinite`: any kFinite value
  int status;
};

constexpr double kFinite = 12345.0;
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kDenormal = 4.9406564584124654e-324;
constexpr float kFinf = std::numeric_limits<float>::infinity();
constexpr float kFnan = std::numeric_limits<float>::quiet_NaN();
constexpr float kFdenormal = 1.40129846e-45f;

const Special<double> kDoubles[] = {
    {"dExp", 0, 1, 0},
    {"dExp", -0.0, 1, 0},
    {"dExp", -kInf, 0, 0},
    {"dExp", kInf, kInf, 0},
    {"dExp", kNan, kNan, 0},
    {"dExp", 710, kInf, StatusOverflow},
    {"dExp", -746, 0, StatusUnderflow},
    {"dExp", -710, kFinite, StatusUnderflow},
    {"dExp", 709.7, kFinite, 0},
    {"dExp", -708.396, kFinite, 0},
    {"dExp", kDenormal, 1, 0},
    {"dExpm1", 0, 0, 0},
    {"dExpm1", -0.0, -0.0, 0},
    {"dExpm1", -800, -1, 0},
    {"dExpm1", -kInf, -1, 0},
    {"dExpm1", kInf, kInf, 0},
    {"dExpm1", kNan, kNan, 0},
    {"dExpm1", 710, kInf, StatusOverflow},
    {"dExpm1", 709.7, kFinite, 0},
    {"dExpm1", kDenormal, kDenormal, 0},
    {"dLn", 1, 0, 0},
    {"dLn", 0, -kInf, StatusSingularity},
    {"dLn", -0.0, -kInf, StatusSingularity},
    {"dLn", -1, kNan, StatusDomain},
    {"dLn", -kInf, kNan, StatusDomain},
    {"dLn", kInf, kInf, 0},
    {"dLn", kNan, kNan, 0},
    {"dLn", kDenormal, -744.44007192138126, 0},
    {"dLn", -kDenormal, kNan, StatusDomain},
    {"dLog10", 1, 0, 0},
    {"dLog10", 0, -kInf, StatusSingularity},
    {"dLog10", -3, kNan, StatusDomain},
    {"dLog10", kInf, kInf, 0},
    {"dLog10", kNan, kNan, 0},
    {"dLog10", -kInf, kNan, StatusDomain},
    {"dLog10", kDenormal, kFinite, 0},
    {"dLog1p", 0, 0, 0},
    {"dLog1p", -0.0, -0.0, 0},
    {"dLog1p", -1, -kInf, StatusSingularity},
    {"dLog1p", -1.5, kNan, StatusDomain},
    {"dLog1p", -kInf, kNan, StatusDomain},
    {"dLog1p", kInf, kInf, 0},
    {"dLog1p", kNan, kNan, 0},
    {"dLog1p", 1e308, kFinite, 0},
    {"dLog1p", kDenormal, kDenormal, 0},
};

const Special<float> kSingles[] = {
    {"sExp", 0, 1, 0},
    {"sExp", -kFinf, 0, 0},
    {"sExp", kFinf, kFinf, 0},
    {"sExp", kFnan, kFnan, 0},
    {"sExp", 89, kFinf, StatusOverflow},
    {"sExp", -104, 0, StatusUnderflow},
    {"sExp", -88, kFinite, StatusUnderflow},
    {"sExp", 88.7f, kFinite, 0},
    {"sExpm1", -0.0f, -0.0f, 0},
    {"sExpm1", -100, -1, 0},
    {"sExpm1", 89, kFinf, StatusOverflow},
    {"sExpm1", -kFinf, -1, 0},
    {"sExpm1", kFnan, kFnan, 0},
    {"sExpm1", 88.7f, kFinite, 0},
    {"sLn", 1, 0, 0},
    {"sLn", 0, -kFinf, StatusSingularity},
    {"sLn", -0.0f, -kFinf, StatusSingularity},
    {"sLn", -1, kFnan, StatusDomain},
    {"sLn", kFinf, kFinf, 0},
    {"sLn", -kFinf, kFnan, StatusDomain},
    {"sLn", kFnan, kFnan, 0},
    {"sLn", kFdenormal, -103.278929903f, 0},
    {"sLn", 3.4e38f, kFinite, 0},
    {"sLog10", 1, 0, 0},
    {"sLog10", 0, -kFinf, StatusSingularity},
    {"sLog10", -1, kFnan, StatusDomain},
    {"sLog10", kFnan, kFnan, 0},
    {"sLog10", kFinf, kFinf, 0},
    {"sLog1p", -0.0f, -0.0f, 0},
    {"sLog1p", -1, -kFinf, StatusSingularity},
    {"sLog1p", -2, kFnan, StatusDomain},
    {"sLog1p", kFinf, kFinf, 0},
    {"sLog1p", kFnan, kFnan, 0},
    {"sLog1p", 3e38f, kFinite, 0},
    {"sLog1p", kFdenormal, kFdenormal, 0},
};

template <class T>
bool matches(T got, T expected) {
  if (std::isnan(expected)) return std::isnan(got);
  if (expected == static_cast<T>(kFinite)) return std::isfinite(got);
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
void check(const Special<T> (&cases)[N]) {
  const test::TefState state;
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

TEST(SpecialValues, Doubles) { check(kDoubles); }
TEST(SpecialValues, Singles) { check(kSingles); }

// With flushing on, a kDenormal argument is zero.
TEST(SpecialValues, DenormalArgumentsUnderFlush) {
  const test::TefState state;
  _tefSetMode(TEF_FLUSH_ON | TEF_ERRMODE_IGNORE);
  const double a[2] = {kDenormal, -kDenormal};
  double r[2];
  _tefdLn(2, a, r);
  EXPECT_EQ(r[0], -kInf);
  EXPECT_EQ(r[1], -kInf);
  EXPECT_EQ(_tefGetErrStatus(), StatusSingularity);
  const double b[1] = {-720};
  _tefdExp(1, b, r);
  EXPECT_EQ(r[0], 0.0);
  _tefSetMode(TEF_FLUSH_OFF);
}

}  // namespace
