// The radix sorts against a comparison sort in the order of the bit patterns.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <vector>

#include "orx/primitives.h"

namespace {

void radix_sort(float* x, float* work, int n) { g9_ulosSortRadixAscend_32f_I(x, work, n); }
void radix_sort(double* x, double* work, int n) { g9_ulosSortRadixAscend_64f_I(x, work, n); }

template <class T>
struct RadixSort : testing::Test {
  using Bits = std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>;
  static constexpr Bits sign = Bits(1) << (8 * sizeof(T) - 1);

  static Bits bits(T x) {
    Bits b;
    std::memcpy(&b, &x, sizeof b);
    return b;
  }
  // Total order by sign and magnitude, written down independently of the sort's own trick.
  static bool before(Bits a, Bits b) {
    const bool negative_a = a & sign, negative_b = b & sign;
    if (negative_a != negative_b) return negative_a;
    return negative_a ? a > b : a < b;
  }

  // Numbers travel as bit patterns: a NaN must come out as it went in.
  static void check(std::vector<Bits> x) {
    const int n = int(x.size());
    std::vector<Bits> expected = x, work(n + 1, 0x55), guarded = x;
    std::sort(expected.begin(), expected.end(), before);
    guarded.push_back(0x77);
    radix_sort(reinterpret_cast<T*>(guarded.data()), reinterpret_cast<T*>(work.data()), n);
    EXPECT_EQ(guarded.back(), Bits(0x77));
    EXPECT_EQ(work.back(), Bits(0x55));
    guarded.pop_back();
    EXPECT_EQ(guarded, expected) << "n = " << n;
  }
};
using Reals = testing::Types<float, double>;
TYPED_TEST_SUITE(RadixSort, Reals);

const std::vector<int> sizes = {0, 1, 2, 3, 29, 30, 31, 32, 200, 1499, 1500, 1501, 2500, 70000};

TYPED_TEST(RadixSort, AnyBitPatterns) {
  std::mt19937_64 random(1);
  for (const int n : sizes) {
    std::vector<typename TestFixture::Bits> x(n);
    for (auto& b : x) b = static_cast<typename TestFixture::Bits>(random());
    this->check(x);
  }
}

TYPED_TEST(RadixSort, KindsOfData) {
  using T = TypeParam;
  std::mt19937_64 random(2);
  std::normal_distribution<double> normal;
  const T inf = std::numeric_limits<T>::infinity(), nan = std::numeric_limits<T>::quiet_NaN();
  const T special[] = {0,
                       -T(0),
                       inf,
                       -inf,
                       nan,
                       -nan,
                       std::numeric_limits<T>::denorm_min(),
                       -std::numeric_limits<T>::min(),
                       std::numeric_limits<T>::max(),
                       1};
  const auto close_numbers = [&](int high_words) {
    const double x = 1 + std::ldexp(random() % high_words, -20) + std::ldexp(random() >> 32, -52);
    return T(random() % 2 ? x : -x);
  };
  const std::function<T(int)> kinds[] = {
      [&](int) { return T(normal(random)); },
      [&](int) { return T(random() % 10); },   // many digits shared by all
      [&](int) { return -T(random() % 10); },  // the sign digit shared, yet the order reversed
      [&](int) { return T(-2.5); },            // all the same
      [&](int i) { return T(i); },             // sorted
      [&](int i) { return T(-i); },            // reversed
      [&](int) { return special[random() % 10]; },
      [&](int i) { return T(std::ldexp(normal(random), i % 60 - 30)); },
      [&](int) { return close_numbers(3); },  // few high words: long runs that differ in the low ones
      [&](int) { return close_numbers(200); },
  };
  for (const auto& kind : kinds) {
    for (const int n : sizes) {
      std::vector<typename TestFixture::Bits> x(n);
      for (int i = 0; i < n; ++i) x[i] = this->bits(kind(i));
      this->check(x);
    }
  }
}

}  // namespace
