// The rounding functions and Modf, bit for bit and flag for flag, beside the C library's.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "orx/tef.h"

namespace {

template <class T>
using Bits = std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>;
template <class To, class From>
To as_bits_of(From from) {
  To to;
  static_assert(sizeof to == sizeof from);
  std::memcpy(&to, &from, sizeof to);
  return to;
}

// When inexact is raised: where the result is not the argument it may be, or must; of Round it is free.
enum Inexact { kNever, kFree, kWhereRounded, kAnywhere };

template <class T>
struct Rounding {
  const char* name;
  void (*kernel)(int, const T*, T*);
  T (*judge)(T);
  Inexact inexact;
};

#define ORX_ROUNDING(t, T, Fn, c_name, inexact)                        \
  {                                                                    \
#Fn, _tef##t##Fn, [](T x) -> T { return std::c_name(x); }, inexact \
  }
#define ORX_ROUNDINGS(t, T)                                                                           \
  {                                                                                                   \
    ORX_ROUNDING(t, T, Ceil, ceil, kFree), ORX_ROUNDING(t, T, Floor, floor, kFree),                   \
        ORX_ROUNDING(t, T, Trunc, trunc, kFree), ORX_ROUNDING(t, T, Rint, rint, kWhereRounded),       \
        ORX_ROUNDING(t, T, NearbyInt, nearbyint, kNever), ORX_ROUNDING(t, T, Round, round, kAnywhere) \
  }
const std::vector<Rounding<float>> kSingles = ORX_ROUNDINGS(s, float);
const std::vector<Rounding<double>> kDoubles = ORX_ROUNDINGS(d, double);

// All over the range, every exponent; and what lies next to integers and to their middles.
template <class T>
std::vector<T> arguments() {
  std::vector<T> all;
  std::mt19937_64 random(1);
  constexpr int mantissa = std::numeric_limits<T>::digits - 1;
  const Bits<T> exponents = (Bits<T>(1) << (8 * sizeof(T) - 1 - mantissa)) - 1;
  for (Bits<T> exponent = 0; exponent <= exponents; ++exponent)
    for (int i = 0; i < 200; ++i) {
      Bits<T> fraction = static_cast<Bits<T>>(random()) & ((Bits<T>(1) << mantissa) - 1);
      if (i % 4 == 0) fraction &= ~Bits<T>(0) << (random() % mantissa);  // short ones
      if (exponent == exponents && fraction) fraction |= Bits<T>(1) << (mantissa - 1);
      all.push_back(as_bits_of<T>(exponent << mantissa | fraction));
    }
  for (int k = 0; k < mantissa + 2; ++k)
    for (double near : {0.0, 0.25, 0.5, 0.75, 1.0, 1.5, 2.0, 2.5, 3.0, 3.5})
      for (int step : {0, 1, -1}) {
        const T x = static_cast<T>(std::ldexp(1.0, k) + near);
        all.push_back(step ? std::nextafter(x, static_cast<T>(step) * std::numeric_limits<T>::infinity())
                           : x);
      }
  for (size_t i = all.size(); i-- > 0;) all.push_back(-all[i]);
  return all;
}

constexpr int kDirections[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};

template <class T>
void check_results(const std::vector<Rounding<T>>& functions) {
  const std::vector<T> a = arguments<T>();
  std::vector<T> r(a.size());
  for (const Rounding<T>& f : functions)
    for (int direction : kDirections) {  // the caller's, which does not matter
      std::fesetround(direction);
      f.kernel(static_cast<int>(a.size()), a.data(), r.data());
      std::fesetround(FE_TONEAREST);
      for (size_t i = 0; i < a.size(); ++i)
        ASSERT_EQ(as_bits_of<Bits<T>>(r[i]), as_bits_of<Bits<T>>(f.judge(a[i]))) << f.name << " of " << a[i];
    }
}
TEST(Rounding, Results) {
  check_results(kSingles);
  check_results(kDoubles);
}

// What a call of n equal elements raises.
template <class T, class... R>
int raised(void (*kernel)(int, const T*, R*...), T x, int n) {
  std::vector<T> a(static_cast<size_t>(n), x), r(2 * a.size());
  std::feclearexcept(FE_ALL_EXCEPT);
  if constexpr (sizeof...(R) == 2)
    kernel(n, a.data(), r.data(), r.data() + n);
  else
    kernel(n, a.data(), r.data());
  return std::fetestexcept(FE_ALL_EXCEPT);
}

template <class T>
void check_exceptions(const std::vector<Rounding<T>>& functions, void (*modf)(int, const T*, T*, T*)) {
  using Limits = std::numeric_limits<T>;
  const T numbers[] = {0,
                       T(0.25),
                       T(0.5),
                       T(-2.5),
                       3,
                       -7,
                       T(1e-30),
                       Limits::denorm_min(),
                       Limits::max(),
                       Limits::infinity(),
                       -Limits::infinity(),
                       Limits::quiet_NaN()};
  for (T x : numbers)
    for (int n : {1, 3, 16, 21}) {  // absent lanes raise nothing
      for (const Rounding<T>& f : functions) {
        const bool rounded = x != f.judge(x) && x == x;
        const int must = rounded && f.inexact == kWhereRounded ? FE_INEXACT : 0;
        const int may = f.inexact == kAnywhere || (rounded && f.inexact == kFree) ? FE_INEXACT : 0;
        EXPECT_EQ(raised<T>(f.kernel, x, n) & ~may, must) << f.name << " of " << x << ", " << n;
      }
      EXPECT_EQ(raised(modf, x, n), 0) << "Modf of " << x << ", " << n;
    }
}
TEST(Rounding, Exceptions) {
  check_exceptions(kSingles, _tefsModf);
  check_exceptions(kDoubles, _tefdModf);
}

// Of `a`, under every rounding of the caller.
template <class T>
void check_parts(void (*kernel)(int, const T*, T*, T*), const std::vector<T>& a) {
  std::vector<T> wholes(a.size()), fractions(a.size()), whole(a.size()), fraction(a.size());
  for (size_t i = 0; i < a.size(); ++i) fractions[i] = std::modf(a[i], &wholes[i]);
  for (int direction : kDirections) {
    std::fesetround(direction);
    kernel(static_cast<int>(a.size()), a.data(), whole.data(), fraction.data());
    std::fesetround(FE_TONEAREST);
    for (size_t i = 0; i < a.size(); ++i) {
      ASSERT_EQ(as_bits_of<Bits<T>>(whole[i]), as_bits_of<Bits<T>>(wholes[i])) << a[i];
      ASSERT_EQ(as_bits_of<Bits<T>>(fraction[i]), as_bits_of<Bits<T>>(fractions[i])) << a[i];
    }
  }
}
TEST(Rounding, Parts) {
  check_parts(_tefsModf, arguments<float>());
  check_parts(_tefdModf, arguments<double>());
}

// All singles but NaN, in some minutes: test_tef --gtest_also_run_disabled_tests --gtest_filter='*PartsOfAllSingles'
TEST(Rounding, DISABLED_PartsOfAllSingles) {
  constexpr uint32_t chunk = 1 << 16, infinity = 0x7F800000;
  std::vector<float> a(chunk);
  for (uint32_t sign : {0u, 0x80000000u})
    for (uint32_t first = 0; first <= infinity; first += chunk) {
      for (uint32_t i = 0; i < chunk; ++i) a[i] = as_bits_of<float>(sign | std::min(first + i, infinity));
      check_parts(_tefsModf, a);
      if (HasFatalFailure()) return;
    }
}

}  // namespace
