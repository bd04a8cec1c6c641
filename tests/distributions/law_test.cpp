// The law of every distribution on a grid of parameters: few numbers and fixed seeds; tools/kob/distributions has
// the long form.
#include "laws.hpp"
#include "support/stream.hpp"

TEST(Laws, HoldForEveryBranch) {
  for (const Law& law : all_laws()) {
    const Verdict verdict = judge(law, Stream(KOB_BRNG_MT19937, {20261, 5}), 20000);
    EXPECT_GT(verdict.p_value, 1e-4) << law.name << ", " << verdict.test;
  }
}

// What a call keeps for the next one, or should, decides here.
TEST(Laws, HoldForCallsOfOneNumber) {
  for (const Law& law : all_laws()) {
    const Verdict verdict = judge(law, Stream(KOB_BRNG_MT19937, {20261, 6}), 4000, 1);
    EXPECT_GT(verdict.p_value, 1e-4) << law.name << ", " << verdict.test;
  }
}
