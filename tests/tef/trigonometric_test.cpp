// SinCos gives what Sin and Cos of the same class give, bit by bit.
#include <gtest/gtest.h>

#include <limits>

#include "functions.h"

namespace {

using namespace orx;

const Function& function_of(const std::string& name) {
  for (const Function& f : functions())
    if (f.full_name() == name) return f;
  throw std::out_of_range(name);
}

// Of every exponent, usual ones, near multiples of pi/2, and special.
template <class R>
std::vector<R> arguments() {
  using Limits = std::numeric_limits<R>;
  constexpr R quarter = R(0x1.921fb54442d18p+0);
  std::vector<R> all = {
      0, -R(0), Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(), Limits::max()};
  std::mt19937 random(3);
  std::uniform_real_distribution<R> share(1, 2), usual(-1000, 1000);
  for (int e = Limits::min_exponent - Limits::digits; e < Limits::max_exponent; ++e)
    for (R sign : {R(1), R(-1)}) all.push_back(std::ldexp(sign * share(random), e));
  for (int i = 0; i < 4000; ++i) {
    all.push_back(usual(random));
    all.push_back(static_cast<R>(i * i) * quarter);
  }
  return all;
}

template <class R>
void expect_same_bits(const std::string& type) {
  const Function &sine = function_of(type + "Sin"), &cosine = function_of(type + "Cos"),
                 &both = function_of(type + "SinCos");
  const std::vector<R> x = arguments<R>();
  const int n = static_cast<int>(x.size());
  for (int c = 0; c < kClassCount; ++c) {
    test::Vectors<R> s(sine, n), k(cosine, n), sk(both, n);
    for (int i = 0; i < n; ++i) {
      const std::vector<R> element = {x[static_cast<size_t>(i)]};
      s.set(i, element);
      k.set(i, element);
      sk.set(i, element);
    }
    s.run(sine.kernel_of(c));
    k.run(cosine.kernel_of(c));
    sk.run(both.kernel_of(c));
    for (int i = 0; i < n; ++i)
      EXPECT_TRUE(test::same_bits(sk.result(i), {s.result(i)[0], k.result(i)[0]}))
          << both.kernel_of(c).name << "(" << x[static_cast<size_t>(i)] << ")";
  }
}

TEST(Trigonometric, SinCosHasTheBitsOfSinAndCos) {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_IGNORE);
  expect_same_bits<float>("s");
  expect_same_bits<double>("d");
}

}  // namespace
