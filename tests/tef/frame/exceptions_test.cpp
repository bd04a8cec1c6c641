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

template <class T>
struct Function {
  const char* name;
  void (*const* ttab)(int, const T*, T*);
  struct Case {
    double x;
    int expected;
  };
  std::vector<Case> cases;
};

// The element alone, and among usual ones in the main part, before and after it.
template <class T>
void check(const std::vector<Function<T>>& functions) {
  _tefSetMode(TEF_ERRMODE_IGNORE);
  for (const auto& f : functions)
    for (const auto& c : f.cases)
      for (int index = 0; index < 3; ++index)
        for (const size_t place : {0, 1, 9, 20, 44}) {
          std::vector<T> a(place == 0 ? 1 : 45, T(0.625));
          a[place] = static_cast<T>(c.x);
          EXPECT_EQ(exceptions(f.ttab[index], a, c.expected), c.expected)
              << f.name << " " << index << " of " << c.x << " at " << place;
        }
}

#define ORX_TTAB(name) #name, orx_tef_kernel_##name##_ttab

TEST(Exceptions, Doubles) {
  constexpr double kTiny = 1e-200, kDenormal = 1e-310, kMax = 1.7976931348623157e308;
  const std::vector<Function<double>::Case> logarithm = {{0.0, FE_DIVBYZERO},
                                                         {-0.0, FE_DIVBYZERO},
                                                         {-1, FE_INVALID},
                                                         {-kInf, FE_INVALID},
                                                         {-kDenormal, FE_INVALID},
                                                         {kInf, 0},
                                                         {kNan, 0},
                                                         {kDenormal, 0},
                                                         {kTiny, 0},
                                                         {kMax, 0},
                                                         {1, 0}};
  check<double>({
      {ORX_TTAB(dExp),
       {{0, 0},
        {kTiny, 0},
        {kDenormal, 0},
        {-kDenormal, 0},
        {kInf, 0},
        {-kInf, 0},
        {kNan, 0},
        {709.7, 0},
        {710, FE_OVERFLOW},
        {kMax, FE_OVERFLOW},
        {-708, 0},
        {-710, FE_UNDERFLOW},
        {-746, FE_UNDERFLOW},
        {-1e300, FE_UNDERFLOW}}},
      {ORX_TTAB(dExpm1),
       {{0, 0},
        {-0.0, 0},
        {kTiny, 0},
        {kDenormal, FE_UNDERFLOW},
        {-kDenormal, FE_UNDERFLOW},
        {kInf, 0},
        {-kInf, 0},
        {kNan, 0},
        {-700, 0},
        {-1e300, 0},
        {709.7, 0},
        {710, FE_OVERFLOW}}},
      {ORX_TTAB(dLn), logarithm},
      {ORX_TTAB(dLog10), logarithm},
      {ORX_TTAB(dLog1p),
       {{0, 0},
        {-0.0, 0},
        {kTiny, 0},
        {-kTiny, 0},
        {kDenormal, FE_UNDERFLOW},
        {-1, FE_DIVBYZERO},
        {-2, FE_INVALID},
        {-kInf, FE_INVALID},
        {kInf, 0},
        {kNan, 0},
        {1e150, 0},
        {1e300, 0},
        {kMax, 0}}},
  });
}

TEST(Exceptions, Singles) {
  constexpr double kTiny = 1e-30, kDenormal = 1e-40, kMax = std::numeric_limits<float>::max();
  const std::vector<Function<float>::Case> logarithm = {{0.0, FE_DIVBYZERO},
                                                        {-0.0, FE_DIVBYZERO},
                                                        {-1, FE_INVALID},
                                                        {-kInf, FE_INVALID},
                                                        {-kDenormal, FE_INVALID},
                                                        {kInf, 0},
                                                        {kNan, 0},
                                                        {kDenormal, 0},
                                                        {kTiny, 0},
                                                        {kMax / 3, 0},
                                                        {kMax, 0},
                                                        {1, 0}};
  check<float>({
      {ORX_TTAB(sExp),
       {{0, 0},
        {kTiny, 0},
        {kDenormal, 0},
        {-kDenormal, 0},
        {kInf, 0},
        {-kInf, 0},
        {kNan, 0},
        {88.7, 0},
        {89, FE_OVERFLOW},
        {kMax, FE_OVERFLOW},
        {-87, 0},
        {-88, FE_UNDERFLOW},
        {-104, FE_UNDERFLOW},
        {-1e30, FE_UNDERFLOW}}},
      {ORX_TTAB(sExpm1),
       {{0, 0},
        {-0.0, 0},
        {kTiny, 0},
        {kDenormal, FE_UNDERFLOW},
        {kInf, 0},
        {-kInf, 0},
        {kNan, 0},
        {-80, 0},
        {-1e30, 0},
        {88.7, 0},
        {89, FE_OVERFLOW}}},
      {ORX_TTAB(sLn), logarithm},
      {ORX_TTAB(sLog10), logarithm},
      {ORX_TTAB(sLog1p),
       {{0, 0},
        {-0.0, 0},
        {kTiny, 0},
        {-kTiny, 0},
        {kDenormal, FE_UNDERFLOW},
        {-1, FE_DIVBYZERO},
        {-2, FE_INVALID},
        {-kInf, FE_INVALID},
        {kInf, 0},
        {kNan, 0},
        {1e20, 0},
        {1e37, 0},
        {kMax, 0}}},
  });
}

}  // namespace
