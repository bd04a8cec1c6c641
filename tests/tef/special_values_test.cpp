// Special arguments of every function, as its descriptor tells them: results, statuses, reports and floating-point
// exceptions, in every class, alone and among usual elements.
#include <gtest/gtest.h>

#include <cfenv>
#include <csetjmp>
#include <csignal>
#include <limits>
#include <sstream>

#include "functions.h"

namespace {

using namespace orx;
using descriptor::Number;
using descriptor::Special;

constexpr int kCount = 45;
constexpr int kPlaces[] = {0, 9, 20, 44};  // in the head, the main part and the tail

template <class R>
std::vector<R> numbers(const descriptor::Numbers& list) {
  std::vector<R> all;
  for (const Number& n : list) all.push_back(n.as<R>());
  return all;
}

template <class R>
bool matches(R got, const Number& number) {
  const R expected = number.as<R>();
  if (number.any_finite()) return std::isfinite(got);
  if (std::isnan(expected)) return std::isnan(got);
  if (!std::isfinite(expected) || expected == 0)
    return got == expected && std::signbit(got) == std::signbit(expected);
  return std::fabs(got - expected) <= std::fabs(expected) * R(0x1p-10);
}

template <class R>
std::string describe(const Kernel& k, const Special& s) {
  std::ostringstream text;
  text << k.name;
  for (const Number& n : s.in) text << (&n == s.in.data() ? "(" : ", ") << n.as<R>();
  return text.str() + ")";
}

int errors;
int last_index;
int count_errors(TefErrorContext* e) {
  ++errors;
  last_index = e->index;
  return 0;
}

// Vectors with the case at one place among usual elements, but all over where the second argument is one for all.
template <class R>
class Surrounded {
 public:
  Surrounded(const Function& f, const Special& s, int place)
      : vectors(f, kCount), alike(f.shape->scalars == f.in_width()) {
    std::mt19937 random(1);
    const std::vector<R> special = numbers<R>(s.in);
    for (int i = 0; i < kCount; ++i) {
      const std::vector<R> usual = test::usual_element<R>(f, random);
      vectors.set(i, i == place || alike ? special : usual);
    }
  }

  test::Vectors<R> vectors;
  const bool alike;
};

// A call of f(function, R(), kernel, case, place) for all there is.
template <class F>
void for_each_case(F f) {
  test::for_each_function([&](const Function& function, auto real) {
    for (const Special& s : test::specials(function))
      for (const Kernel& k : function.kernels)
        if (test::serves(k, s.classes))
          for (int place : kPlaces) f(function, real, k, s, place);
  });
}

TEST(SpecialValues, ResultsStatusesAndReports) {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_CALLBACK);
  _tefSetErrorCallBack(count_errors);
  for_each_case([](const Function& f, auto real, const Kernel& k, const Special& s, int place) {
    using R = decltype(real);
    Surrounded<R> call(f, s, place);
    errors = 0;
    _tefClearErrStatus();
    call.vectors.run(k);
    const std::vector<R> result = call.vectors.result(place);
    for (size_t i = 0; i < result.size(); ++i)
      EXPECT_TRUE(matches(result[i], s.out[i])) << describe<R>(k, s) << " result " << i << " = " << result[i];
    EXPECT_EQ(_tefGetErrStatus(), s.status) << describe<R>(k, s);
    EXPECT_EQ(errors, s.status == StatusOk ? 0 : call.alike ? kCount : 1) << describe<R>(k, s);
    if (s.status && !call.alike) {
      EXPECT_EQ(last_index, place) << describe<R>(k, s);
    }
  });
}

TEST(SpecialValues, UsualElementsBesideThemAreNotTouched) {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_IGNORE);
  for_each_case([](const Function& f, auto real, const Kernel& k, const Special& s, int place) {
    using R = decltype(real);
    Surrounded<R> with(f, s, place), without(f, s, -1);
    if (with.alike) return;
    with.vectors.run(k);
    without.vectors.run(k);
    for (int i = 0; i < kCount; ++i) {
      const bool same = test::same_bits(with.vectors.result(i), without.vectors.result(i));
      EXPECT_TRUE(same || i == place) << describe<R>(k, s) << " changes element " << i;
    }
  });
}

constexpr int kLookedAt = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW;

int expected_exceptions(const Special& s) {
  if (s.raises >= 0) return s.raises;
  const int of_status[] = {0, FE_INVALID, FE_DIVBYZERO, FE_OVERFLOW, FE_UNDERFLOW};
  return of_status[s.status];
}

// Annex F of C99 leaves underflow open where a denormal result may be exact.
template <class R>
int open_exceptions(const Special& s) {
  for (const Number& n : s.out)
    if (!n.any_finite() && std::fpclassify(n.as<R>()) == FP_SUBNORMAL) return FE_UNDERFLOW;
  return 0;
}

// What may be trapped. Code that is not optimised, as under sanitizers, returns numbers by way of the x87 stack in 32-bit
// builds; a trap for underflow would answer every denormal there.
#if defined(__SANITIZE_ADDRESS__) && defined(__i386__)
constexpr int kTrapped = kLookedAt & ~FE_UNDERFLOW;
#else
constexpr int kTrapped = kLookedAt;
#endif

sigjmp_buf trapped;
void jump_out(int) { siglongjmp(trapped, 1); }

// Runs the kernel with traps for `exceptions`; false if one was raised.
template <class R>
bool runs_under_traps(test::Vectors<R>& vectors, const Kernel& k, int exceptions) {
  fenv_t before;
  fegetenv(&before);
  std::feclearexcept(FE_ALL_EXCEPT);
  const auto old = std::signal(SIGFPE, jump_out);
  const bool quiet = sigsetjmp(trapped, 1) == 0;
  if (quiet) {
    feenableexcept(exceptions);
    vectors.run(k);
  }
  fesetenv(&before);
  std::signal(SIGFPE, old);
  return quiet;
}

TEST(SpecialValues, Exceptions) {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_IGNORE);
  for_each_case([](const Function& f, auto real, const Kernel& k, const Special& s, int place) {
    using R = decltype(real);
    Surrounded<R> call(f, s, place);
    const int expected = expected_exceptions(s), open = open_exceptions<R>(s);
    std::feclearexcept(FE_ALL_EXCEPT);
    call.vectors.run(k);
    EXPECT_EQ(std::fetestexcept(kLookedAt & ~open), expected & ~open) << describe<R>(k, s);
    EXPECT_TRUE(runs_under_traps(call.vectors, k, kTrapped & ~open & ~expected)) << describe<R>(k, s);
  });
}

// An argument of every exponent: to a normal result no kernel goes by what is too small, too large or invalid.
template <class R>
void expect_quiet_normal_results(const Function& f, const Kernel& k) {
  using Limits = std::numeric_limits<R>;
  test::Vectors<R> vectors(f, kCount);
  for (int e = Limits::min_exponent; e < Limits::max_exponent; ++e)
    for (R x : {R(1.25), R(-1.25)}) {
      vectors.set_all({std::ldexp(x, e)});
      _tefClearErrStatus();
      std::feclearexcept(FE_ALL_EXCEPT);
      vectors.run(k);
      const int raised = std::fetestexcept(kLookedAt);
      bool normal = _tefGetErrStatus() == StatusOk;
      for (R r : vectors.result(0)) normal = normal && std::isnormal(r);
      if (normal) {
        ASSERT_EQ(raised, 0) << k.name << "(" << std::ldexp(x, e) << ")";
      }
    }
}

TEST(SpecialValues, NormalResultsRaiseNothingOnTheWay) {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_IGNORE);
  test::for_each_function([](const Function& f, auto real) {
    if (f.columns_in() != 1) return;
    for (const Kernel& k : f.kernels) expect_quiet_normal_results<decltype(real)>(f, k);
  });
}

TEST(SpecialValues, EveryFunctionHasSome) {
  test::for_each_function([](const Function& f, auto) {
    EXPECT_GE(test::specials(f).size(), f.descriptor->formula ? 0u : 3u) << f.full_name();
  });
}

}  // namespace
