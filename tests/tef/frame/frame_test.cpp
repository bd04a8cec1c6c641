// The kernel frame in its calling shapes, with kernels whose mathematics is plain: two inputs, a scalar
// second input, two outputs.
#include <gtest/gtest.h>

#include <vector>

#include "frame/kernel.hpp"

using namespace orx::tef;

namespace {

constexpr Row<double> kLimit = 100.0;

// a * b, rare from |a| = 100 on: there the scalar routine negates the product, and tells an overflow from
// 1000 on.
struct Product : Kernel<double, 2, 1> {
  template <class X>
  static X rare(X a, X) {
    return not_below(magnitude(a), kLimit);
  }
  template <class X>
  static X eval(X a, X b) {
    return a * b;
  }
  static int rare_lane(const double* a, const double* b, double* r) {
    *r = -*a * *b;
    return *a >= 1000 ? StatusOverflow : StatusOk;
  }
};
struct ProductWithScalar : Product {
  static constexpr bool kScalarSecond = true;
};

struct SumAndSquare : Kernel<double, 1, 2> {
  static constexpr int kTogether = 2;
  template <class X>
  static X rare(X a) {
    return not_below(magnitude(a), kLimit);
  }
  template <class X>
  static void eval(X a, X& sum, X& square) {
    sum = a + a;
    square = a * a;
  }
  static int rare_lane(const double* a, double* sum, double* square) {
    *sum = -1;
    *square = *a;
    return StatusDomain;
  }
};

std::vector<TefErrorContext> seen;
int record(TefErrorContext* e) {
  seen.push_back(*e);
  e->res1 += 0.5;
  return 0;
}

class Frame : public testing::Test {
 protected:
  static constexpr int kSize = 37;
  double a[kSize], b[kSize], r[kSize], s[kSize];
  void SetUp() override {
    seen.clear();
    _tefSetErrorCallBack(record);
    _tefSetMode(TEF_ERRMODE_CALLBACK);
    for (int i = 0; i < kSize; ++i) {
      a[i] = i;
      b[i] = 2 + i;
    }
    a[5] = 200;
    a[6] = 1000;
    a[36] = 2000;
  }
  void TearDown() override { _tefClearErrorCallBack(); }
};

TEST_F(Frame, TwoInputs) {
  run_kernel<Product>(kSize, {{a, b}, {r}, "vdProduct"});
  EXPECT_EQ(r[4], 24);
  EXPECT_EQ(r[5], -1400);
  EXPECT_EQ(r[6], -8000 + 0.5);
  EXPECT_EQ(r[36], -76000 + 0.5);
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[0].index, 6);
  EXPECT_EQ(seen[0].arg2, 8);
}

TEST_F(Frame, ScalarSecondInput) {
  const double factor = 3;
  run_kernel<ProductWithScalar>(kSize, {{a, &factor}, {r}, "vdScaled"});
  for (int i : {0, 4, 7, 20, 35}) EXPECT_EQ(r[i], 3 * a[i]);
  EXPECT_EQ(r[6], -3000 + 0.5);
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[1].index, 36);
  EXPECT_EQ(seen[1].arg2, 3);
}

TEST_F(Frame, TwoOutputs) {
  run_kernel<SumAndSquare>(kSize, {{a}, {r, s}, "vdBoth"});
  EXPECT_EQ(r[10], 20);
  EXPECT_EQ(s[10], 100);
  EXPECT_EQ(r[5], -1 + 0.5);
  EXPECT_EQ(s[5], 200);
  ASSERT_EQ(seen.size(), 3u);
  EXPECT_EQ(seen[1].res2, 1000);
}

}  // namespace
