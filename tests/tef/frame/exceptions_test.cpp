// Floating-point exceptions: each element raises those of its result and no other, in any company, so that a caller
// may have the others trap.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <csetjmp>
#include <csignal>
#include <limits>
#include <string>
#include <vector>

#include "orx/tef.h"

namespace {

constexpr int kAll = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW;
constexpr double kInf = std::numeric_limits<double>::infinity(),
                 kNan = std::numeric_limits<double>::quiet_NaN();

sigjmp_buf after_trap;
void trap(int) { siglongjmp(after_trap, 1); }

// The exceptions of a call, of which those that are not `expected` trap; -1 for a trap.
template <class T>
int exceptions(void (*kernel)(int, const T*, T*), const std::vector<T>& a, int expected) {
  std::vector<T> r(a.size());
  const auto previous = std::signal(SIGFPE, trap);
  volatile int raised = -1;
  std::feclearexcept(kAll);
  if (sigsetjmp(after_trap, 1) == 0) {
    feenableexcept(kAll & ~expected);
    kernel(static_cast<int>(a.size()), a.data(), r.data());
    raised = std::fetestexcept(kAll);
  }
  fedisableexcept(kAll);
  std::feclearexcept(kAll);
  std::signal(SIGFPE, previous);
  return raised;
}

// Arguments that stand for a precision: small ones, and where exponentials begin to overflow and to underflow.
struct Marks {
  double tiny, denormal, huge, largest;
  double exp_large, exp_overflows, exp_small, exp_denormal, exp_zero;
};
constexpr Marks kDoubleMarks = {1e-200, 1e-310, 1e300, 1.7976931348623157e308, 709.7, 710, -708, -710, -746};
constexpr Marks kSingleMarks = {1e-30, 1e-40, 1e37, std::numeric_limits<float>::max(), 88.7, 89,
                                -87,   -88,   -104};

struct Case {
  double x;
  int expected;
};

std::vector<Case> of_exp(const Marks& m) {
  return {{0, 0},
          {m.tiny, 0},
          {m.denormal, 0},
          {-m.denormal, 0},
          {kInf, 0},
          {-kInf, 0},
          {kNan, 0},
          {m.exp_large, 0},
          {m.exp_overflows, FE_OVERFLOW},
          {m.largest, FE_OVERFLOW},
          {m.exp_small, 0},
          {m.exp_denormal, FE_UNDERFLOW},
          {m.exp_zero, FE_UNDERFLOW},
          {-m.huge, FE_UNDERFLOW}};
}
std::vector<Case> of_expm1(const Marks& m) {
  return {{0, 0},
          {-0.0, 0},
          {m.tiny, 0},
          {m.denormal, FE_UNDERFLOW},
          {-m.denormal, FE_UNDERFLOW},
          {kInf, 0},
          {-kInf, 0},
          {kNan, 0},
          {m.exp_small, 0},
          {-m.huge, 0},
          {m.exp_large, 0},
          {m.exp_overflows, FE_OVERFLOW}};
}
std::vector<Case> of_ln(const Marks& m) {
  return {{0.0, FE_DIVBYZERO},
          {-0.0, FE_DIVBYZERO},
          {-1, FE_INVALID},
          {-kInf, FE_INVALID},
          {-m.denormal, FE_INVALID},
          {kInf, 0},
          {kNan, 0},
          {m.denormal, 0},
          {m.tiny, 0},
          {m.largest / 3, 0},
          {m.largest, 0},
          {1, 0}};
}
std::vector<Case> of_log1p(const Marks& m) {
  return {{0, 0},
          {-0.0, 0},
          {m.tiny, 0},
          {-m.tiny, 0},
          {m.denormal, FE_UNDERFLOW},
          {-1, FE_DIVBYZERO},
          {-2, FE_INVALID},
          {-kInf, FE_INVALID},
          {kInf, 0},
          {kNan, 0},
          {std::sqrt(m.huge), 0},
          {m.huge, 0},
          {m.largest, 0}};
}
// Odd functions that are x where x is tiny, and go on from `more`.
std::vector<Case> of_odd(const Marks& m, const std::vector<Case>& more) {
  std::vector<Case> cases = {
      {0, 0},   {-0.0, 0}, {m.tiny, 0}, {-m.tiny, 0}, {m.denormal, FE_UNDERFLOW}, {-m.denormal, FE_UNDERFLOW},
      {kNan, 0}};
  cases.insert(cases.end(), more.begin(), more.end());
  return cases;
}
std::vector<Case> of_bounded(const Marks& m) {
  return of_odd(m, {{m.huge, 0}, {-m.largest, 0}, {kInf, 0}, {-kInf, 0}});
}
std::vector<Case> of_sinh(const Marks& m) {
  return of_odd(m, {{0.99 * m.exp_small, 0},
                    {-m.exp_small, 0},
                    {m.exp_large, 0},
                    {m.largest, FE_OVERFLOW},
                    {-m.huge, FE_OVERFLOW},
                    {-kInf, 0}});
}
std::vector<Case> of_cosh(const Marks& m) {
  return {{0, 0},
          {m.tiny, 0},
          {m.denormal, 0},
          {0.99 * m.exp_small, 0},
          {-m.exp_small, 0},
          {m.exp_large, 0},
          {m.largest, FE_OVERFLOW},
          {-kInf, 0},
          {kNan, 0}};
}
std::vector<Case> of_asin(const Marks& m) {
  return of_odd(m, {{1, 0}, {-1, 0}, {2, FE_INVALID}, {-kInf, FE_INVALID}});
}
std::vector<Case> of_acos(const Marks& m) {
  return {{0, 0},  {m.denormal, 0}, {m.tiny, 0},      {1, 0},
          {-1, 0}, {kNan, 0},       {-2, FE_INVALID}, {kInf, FE_INVALID}};
}
std::vector<Case> of_atanh(const Marks& m) {
  return of_odd(m,
                {{0.9999999, 0}, {1, FE_DIVBYZERO}, {-1, FE_DIVBYZERO}, {2, FE_INVALID}, {kInf, FE_INVALID}});
}

template <class T>
using Table = void (*const*)(int, const T*, T*);
const struct {
  const char* name;
  Table<float> singles;
  Table<double> doubles;
  std::vector<Case> (*cases)(const Marks&);
} kFunctions[] = {
#define ORX_CASES(Fn, cases) \
  { #Fn, orx_tef_kernel_s##Fn##_ttab, orx_tef_kernel_d##Fn##_ttab, cases }
    ORX_CASES(Exp, of_exp),   ORX_CASES(Expm1, of_expm1),  ORX_CASES(Ln, of_ln),
    ORX_CASES(Log10, of_ln),  ORX_CASES(Log1p, of_log1p),  ORX_CASES(Sinh, of_sinh),
    ORX_CASES(Cosh, of_cosh), ORX_CASES(Tanh, of_bounded), ORX_CASES(Asin, of_asin),
    ORX_CASES(Acos, of_acos), ORX_CASES(Atan, of_bounded), ORX_CASES(Atanh, of_atanh),
#undef ORX_CASES
};

// The element alone, and among usual ones in the main part, before and after it.
template <class T>
void check(const char* name, Table<T> ttab, const std::vector<Case>& cases) {
  _tefSetMode(TEF_ERRMODE_IGNORE);
  for (const Case& c : cases)
    for (int index = 0; index < 3; ++index)
      for (const size_t place : {0, 1, 9, 20, 44}) {
        std::vector<T> a(place == 0 ? 1 : 45, T(0.625));
        a[place] = static_cast<T>(c.x);
        EXPECT_EQ(exceptions(ttab[index], a, c.expected), c.expected)
            << name << " " << index << " of " << c.x << " at " << place;
      }
}

TEST(Exceptions, Doubles) {
  for (const auto& f : kFunctions) check(f.name, f.doubles, f.cases(kDoubleMarks));
}
TEST(Exceptions, Singles) {
  for (const auto& f : kFunctions) check(f.name, f.singles, f.cases(kSingleMarks));
}

}  // namespace
