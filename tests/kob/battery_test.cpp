// The statistical tests of tools/kob, on generators that are known to fail them and to pass.
#include <cmath>

#include "split_streams.hpp"
#include "statistical_tests.hpp"
#include "support/stream.hpp"

namespace {

double least_tail(const std::function<Outcome(const Uniform&)>& test, uint32_t id, int streams = 1,
                  const char* how = "own") {
  SplitStreams numbers(id, streams, how);
  EXPECT_EQ(numbers.status(), 0);
  return test([&] { return numbers.real(); }).tails.least();
}

TEST(Battery, TellsBadFromGood) {
  const struct {
    const char* name;
    std::function<Outcome(const Uniform&)> test;
    uint32_t bad;  // 0: none of ours
    double limit;
  } tests[] = {
      {"birthday spacings", [](auto& next) { return birthday_spacings(next, 1 << 16, 1 << 21); },
       KOB_BRNG_MCG31M1, 1e-10},
      {"collisions", [](auto& next) { return collisions(next, 1 << 19, 1 << 15); }, 0, 0},
      {"gaps", [](auto& next) { return gaps(next); }, KOB_BRNG_R250, 1e-6},
      {"ranks", [](auto& next) { return matrix_ranks(next, 2000); }, 0, 0},
      {"complexity", [](auto& next) { return linear_complexity(next, 10000); }, KOB_BRNG_MT2203, 1e-10}};
  for (const auto& t : tests) {
    SCOPED_TRACE(t.name);
    if (t.bad) {
      EXPECT_LT(least_tail(t.test, t.bad), t.limit);
    }
    EXPECT_GT(least_tail(t.test, KOB_BRNG_MRG32K3A), 1e-4);
    // Numbers of which every other six are the six before; and all alike.
    const Stream s(KOB_BRNG_MRG32K3A);
    int i = 0;
    std::vector<double> six;
    const auto repeated = [&] {
      if (i++ % 12 == 0) six = s.reals(6);
      return six[size_t(i - 1) % 6];
    };
    if (!t.bad) {
      EXPECT_LT(t.test(repeated).tails.least(), 1e-10);
    }
    EXPECT_LT(t.test([&] { return 0.25; }).tails.least(), 1e-10);
  }
}

TEST(Battery, StreamsOfConsecutiveSeedsFailAndOfSpreadSeedsPass) {
  const auto birthdays = [](auto& next) { return birthday_spacings(next, 1 << 18, 1 << 24); };
  EXPECT_LT(least_tail(birthdays, KOB_BRNG_MRG32K3A, 64, "seeds"), 1e-10);
  EXPECT_LT(least_tail(birthdays, KOB_BRNG_MCG59, 64, "skip=55"), 1e-10);
  EXPECT_GT(least_tail(birthdays, KOB_BRNG_MRG32K3A, 64, "spread"), 1e-4);
  EXPECT_GT(least_tail(birthdays, KOB_BRNG_MRG32K3A, 64, "skip=50"), 1e-4);
  EXPECT_GT(least_tail(birthdays, KOB_BRNG_MT2203, 64, "own"), 1e-4);
  EXPECT_NE(SplitStreams(KOB_BRNG_MT19937, 2, "skip=3").status(), 0);
  EXPECT_NE(SplitStreams(0xFFFFFFFF, 1, "own").status(), 0);
}

// All sequences of ten bits, one after the other: their complexities have just the distribution that is assumed.
TEST(Battery, LinearComplexityOfAllShortSequences) {
  constexpr int n = 10;
  std::vector<int> counts(n + 1);
  for (int bits = 0; bits < 1 << n; ++bits) {
    int i = 0;
    ++counts[size_t(linear_complexity([&] { return (bits >> i++ & 1) / 2.0; }, n).statistic)];
  }
  int below = 1;  // the sequence of zeros, which the tails leave out
  for (int l = 1; l <= n; ++l) {
    EXPECT_EQ(counts[size_t(l)], 1 << std::min(2 * n - 2 * l, 2 * l - 1)) << l;
    EXPECT_NEAR(tails::linear_complexity(n, l).left, double(below + counts[size_t(l)]) / (1 << n), 2e-3) << l;
    EXPECT_NEAR(tails::linear_complexity(n, l).right, 1 - double(below) / (1 << n), 2e-3) << l;
    below += counts[size_t(l)];
  }
}

TEST(Battery, Tails) {
  EXPECT_NEAR(tails::poisson(2, 0).left, std::exp(-2), 1e-15);
  EXPECT_EQ(tails::poisson(2, 0).right, 1);
  EXPECT_NEAR(tails::poisson(2, 3).left, std::exp(-2) * (1 + 2 + 2 + 4.0 / 3), 1e-14);
  EXPECT_NEAR(tails::poisson(27, 100).right / 3.7579773400291824e-27, 1, 1e-11);
  EXPECT_NEAR(tails::chi_square(2, 2 * std::log(20)).right, 0.05, 1e-14);
  EXPECT_NEAR(tails::chi_square(1, 3.841458820694124).right, 0.05, 1e-13);
  EXPECT_NEAR(tails::chi_square(1000, 1000).left, 0.5059471, 1e-6);
}

}  // namespace
