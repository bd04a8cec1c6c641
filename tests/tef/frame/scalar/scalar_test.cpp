// What is to be reported goes to the scalar routine, and nothing else: arguments without an error, of whatever size, are
// finished by vectors. A fault here shows in no result, but costs 10 times the time.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "orx/tef.h"

long scalar_elements;

namespace {

template <class T>
struct Counted {
  const char* name;
  void (*kernel)(int, const T*, T*);
};
#define ORX_COUNTED(name) \
  { #name, orx_tef_kernel_##name }

const std::vector<Counted<float>> kSingles = {
    ORX_COUNTED(sExp_G9LAynn),   ORX_COUNTED(sExp_G9HAynn),   ORX_COUNTED(sExp_G9EPnnn),
    ORX_COUNTED(sExpm1_G9LAynn), ORX_COUNTED(sExpm1_G9HAynn), ORX_COUNTED(sExpm1_G9EPnnn),
    ORX_COUNTED(sLn_G9LAynn),    ORX_COUNTED(sLn_G9HAynn),    ORX_COUNTED(sLn_G9EPnnn),
    ORX_COUNTED(sLog10_G9LAynn), ORX_COUNTED(sLog10_G9HAynn), ORX_COUNTED(sLog10_G9EPnnn),
    ORX_COUNTED(sLog1p_G9LAynn), ORX_COUNTED(sLog1p_G9HAynn), ORX_COUNTED(sLog1p_G9EPnnn)};
const std::vector<Counted<double>> kDoubles = {
    ORX_COUNTED(dExp_G9LAynn),   ORX_COUNTED(dExp_G9HAynn),   ORX_COUNTED(dExpm1_G9LAynn),
    ORX_COUNTED(dExpm1_G9HAynn), ORX_COUNTED(dExpm1_G9EPnnn), ORX_COUNTED(dLn_G9LAynn),
    ORX_COUNTED(dLn_G9HAynn),    ORX_COUNTED(dLn_G9EPnnn),    ORX_COUNTED(dLog10_G9LAynn),
    ORX_COUNTED(dLog10_G9HAynn), ORX_COUNTED(dLog1p_V8LAynn), ORX_COUNTED(dLog1p_V8HAynn),
    ORX_COUNTED(dLog1p_V8EPnnn)};

// Every exponent of both signs, and the ends of the range.
template <class T>
std::vector<T> arguments() {
  using Limits = std::numeric_limits<T>;
  std::vector<T> all = {
      0, Limits::denorm_min(), Limits::min(), Limits::max(), Limits::infinity(), Limits::quiet_NaN()};
  for (int e = Limits::min_exponent - Limits::digits; e < Limits::max_exponent; ++e)
    for (double fraction : {1.0, 1.3, 1.99}) all.push_back(static_cast<T>(std::ldexp(fraction, e)));
  for (size_t i = all.size(); i-- > 0;) all.push_back(-all[i]);
  return all;
}

template <class T>
void check(const std::vector<Counted<T>>& kernels) {
  _tefSetMode(TEF_ERRMODE_IGNORE);
  for (const Counted<T>& k : kernels) {
    long in_error = 0;
    for (T x : arguments<T>()) {
      T r;
      scalar_elements = 0;
      _tefClearErrStatus();
      k.kernel(1, &x, &r);
      if (_tefGetErrStatus() == StatusOk) {
        EXPECT_EQ(scalar_elements, 0) << k.name << " of " << x;
      }
      in_error += scalar_elements;
    }
    EXPECT_GT(in_error, 0) << k.name;
  }
}

TEST(ScalarRoutine, OnlyErrorsGoThere) {
  check(kSingles);
  check(kDoubles);
}

}  // namespace
