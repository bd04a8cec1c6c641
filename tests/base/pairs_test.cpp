// Pairs taken apart and put together: an operation on firsts and seconds sees every pair whole, whatever the order of lanes.
#include "orx/base/simd/pairs.hpp"

#include <gtest/gtest.h>

using namespace orx::simd;

namespace {

template <class X>
using Half = Vec<typename X::Element, (X::kCount + 1) / 2>;

template <class X>
class SimdPairs : public testing::Test {};
using Vectors = testing::Types<Vec<float, 1>, Vec<float, 2>, Vec<float, 4>, Vec<double, 1>, Vec<double, 2>,
                               Vec<double, 4>>;
TYPED_TEST_SUITE(SimdPairs, Vectors);

// Pair i is (i + 1, -(i + 1)).
template <class X>
X pairs() {
  alignas(64) typename X::Element lane[X::kLanes];
  for (int i = 0; i < X::kLanes; ++i)
    lane[i] = static_cast<typename X::Element>(i % 2 ? -(i / 2 + 1) : i / 2 + 1);
  return load_vectors<X>(lane);
}

TYPED_TEST(SimdPairs, TakenApartEveryPairIsThere) {
  using X = TypeParam;
  using H = Half<X>;
  H first, second;
  unzip_pairs(pairs<X>(), first, second);
  typename X::Element a[H::kLanes], b[H::kLanes];
  store_vectors(a, first);
  store_vectors(b, second);
  int seen[X::kLanes / 2] = {};
  for (int i = 0; i < H::kLanes; ++i) {
    EXPECT_EQ(a[i], -b[i]);
    ASSERT_TRUE(a[i] >= 1 && a[i] <= X::kLanes / 2);
    ++seen[static_cast<int>(a[i]) - 1];
  }
  for (const int times : seen) EXPECT_EQ(times, X::kCount == 1 ? 2 : 1);
}

TYPED_TEST(SimdPairs, PutTogetherTheyStandWhereTheyStood) {
  using X = TypeParam;
  Half<X> first, second;
  unzip_pairs(pairs<X>(), first, second);
  typename X::Element before[X::kLanes], after[X::kLanes];
  store_vectors(before, pairs<X>());
  store_vectors(after, zip_pairs<X::kCount>(first, second));
  for (int i = 0; i < X::kLanes; ++i) EXPECT_EQ(after[i], before[i]);
}

}  // namespace
