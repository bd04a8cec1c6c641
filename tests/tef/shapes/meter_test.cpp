// The accuracy meter on functions of every shape: it finds nothing in the C library that is not there, and what is.
#include <gtest/gtest.h>

#include "accuracy/measure.hpp"

namespace {

using namespace orx;

const Function& function(const std::string& name) {
  for (const Function& f : functions())
    if (f.full_name() == name) return f;
  std::abort();
}

std::vector<Record> measure(const std::string& name) {
  const Function& f = function(name);
  return f.single() ? measure_strata<float>(f, 0.2) : measure_strata<double>(f, 0.2);
}

TEST(Meter, FindsNoFaultThatIsNotThere) {
  for (const Function& f : functions()) {
    if (!f.shape->elementwise || f.full_name() == "sExp" || !Judge(f).known()) continue;
    const std::vector<Record> found = measure(f.full_name());
    for (size_t k = 0; k < found.size(); ++k) {
      EXPECT_GE(found[k].count, 1000u) << f.kernels[k].name;
      EXPECT_EQ(found[k].wrong, 0u) << f.kernels[k].name << " at " << found[k].wrong_at.in[0] << ", "
                                    << found[k].wrong_at.in[1] << " gives " << found[k].wrong_at.out[0]
                                    << ", " << found[k].wrong_at.out[1];
      EXPECT_LE(found[k].worst, f.kernels[k].bound)
          << f.kernels[k].name << " at " << found[k].worst_at.in[0] << ", " << found[k].worst_at.in[1];
    }
  }
}

TEST(Meter, FindsFaults) {
  const std::vector<Record> found = measure("sExp");
  EXPECT_NEAR(found[kIndexLA].worst, 5.5, 0.05);  // where the steps lead over a power of two
  EXPECT_LT(found[kIndexLA].correct, found[kIndexLA].count / 2);
  EXPECT_NEAR(found[kIndexHA].worst, 0.5, 0.001);
  EXPECT_EQ(found[kIndexHA].wrong, 0u);
  EXPECT_GT(found[kIndexEP].wrong, 0u);
  EXPECT_LT(found[kIndexEP].wrong_at.in[0], -103);
}

// An element's verdict by the three ways to measure.
TEST(Meter, WaysToMeasure) {
  // 1 and 2^-30, computed as 1 and 2^-30 (1 + 2^-20).
  const ExactResult exact[2] = {{ExactResult::kNumber, false, -52, 0x1p52, 0},
                                {ExactResult::kNumber, false, -82, 0x1p52, 0}};
  const double computed[2] = {1, 0x1p-30 + 0x1p-50};
  EXPECT_EQ(compare(exact, computed, 2, {}).error, 0x1p32);
  EXPECT_EQ(compare(exact, computed, 2, {-82 + 20}).error, 0x1p12);
  EXPECT_EQ(compare(exact, computed, 2, {-100000, true}).error, 4);
  EXPECT_FALSE(compare(exact, computed, 2, {}).correct);
  // A zero of the wrong sign.
  const ExactResult zero = {ExactResult::kNumber, true, -1074, 0, 0};
  const double plus = 0;
  EXPECT_TRUE(compare(&zero, &plus, 1, {}).wrong);
  EXPECT_FALSE(compare(&zero, &plus, 1, {-100000, false, true}).wrong);
}

double formula(const std::string& judge, double x) {
  descriptor::Descriptor d{"Test"};
  d.judge = judge.c_str();
  Function f = function("sExp");
  f.descriptor = &d;
  mpfr_t in, out;
  mpfr_init2(in, 53);
  mpfr_init2(out, 192);
  mpfr_set_d(in, x, MPFR_RNDN);
  Formula{f}(&out, &in);
  const double y = mpfr_get_d(out, MPFR_RNDN);
  mpfr_clears(in, out, nullptr);
  return y;
}

// Published digits: NIST Digital Library of Mathematical Functions and tables of the normal distribution.
TEST(Meter, FormulasThatMpfrLacks) {
  EXPECT_DOUBLE_EQ(formula("cdfnorm", 1), 0.84134474606854294859);
  EXPECT_DOUBLE_EQ(formula("cdfnorminv", 0.975), 1.9599639845400542355);
  EXPECT_DOUBLE_EQ(formula("erfinv", 0.5), 0.47693627620446987338);
  EXPECT_DOUBLE_EQ(formula("inv_cbrt", 8), 0.5);
  EXPECT_DOUBLE_EQ(formula("pow2o3", -8), 4);
  EXPECT_DOUBLE_EQ(formula("pow3o2", 4), 8);
  EXPECT_EQ(formula("erfinv", 1), HUGE_VAL);
  EXPECT_EQ(formula("erfcinv", 2), -HUGE_VAL);
  EXPECT_TRUE(std::isnan(formula("cdfnorminv", 1.5)));
  for (double x : {1e-300, 1e-20, 0.01, 0.3, 0.49, 0.5, 0.51, 0.9, 0.999, 1 - 0x1p-53}) {
    EXPECT_NEAR(std::erf(formula("erfinv", x)), x, 4 * x * 0x1p-53);
    EXPECT_NEAR(std::erfc(formula("erfcinv", x)) / x, 1, 1e-12);
  }
  for (double x : {0.125, 0.4375, 0.75, 1.0})
    EXPECT_DOUBLE_EQ(formula("erfcinv", 2 - x), -formula("erfcinv", x));
}

}  // namespace
