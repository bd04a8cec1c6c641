// Words beside four doubles against the same on single words. Compiled once for each instruction set that has them.
#include "orx/base/simd/words.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace orx;
using namespace orx::simd;

namespace {

// Random words, with zeros, ones and the ends of the range among them.
Words4 any_words(std::mt19937& random) {
  constexpr uint32_t ends[] = {0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
  Words4 w;
  for (int i = 0; i < 4; ++i) w[i] = random() % 4 ? uint32_t(random()) : ends[random() % 5];
  return w;
}
template <class Check>
void for_words(const Check& check) {
  std::mt19937 random(3);
  for (int k = 0; k < 2000; ++k) check(any_words(random), any_words(random));
}

TEST(Words, AreRearrangedAndMultiplied) {
  for_words([](Words4 a, Words4 b) {
    const Words4 low = low_halves(Wide2(a), Wide2(b)), high = high_halves(Wide2(a), Wide2(b)),
                 mixed = alternate(a, b), least = simd::min(a, b), chosen = select_of_4(a, b);
    const Wide2 product = simd::multiply_wide(Wide2(a), Wide2(b));
    for (int i = 0; i < 4; ++i) {
      const Words4& from = i < 2 ? a : b;
      ASSERT_EQ(low[i], from[i % 2 * 2]);
      ASSERT_EQ(high[i], from[i % 2 * 2 + 1]);
      ASSERT_EQ(mixed[i], i % 2 ? b[i] : a[i]);
      ASSERT_EQ(least[i], std::min(a[i], b[i]));
      ASSERT_EQ(chosen[i], a[b[i] & 3]);
    }
    for (int i = 0; i < 2; ++i) ASSERT_EQ(product[i], uint64_t(a[2 * i]) * b[2 * i]);
  });
  for (int i = 0; i < 4; ++i) {
    Words4 mask = {};
    EXPECT_FALSE(simd::any(mask));
    mask[i] = 0xFFFFFFFF;
    EXPECT_TRUE(simd::any(mask));
  }
}

TEST(Words, ShiftAsOneNumber) {
  for_words([](Words4 a, Words4) {
    const Words4 left = shift_bytes_left<5>(a), right = shift_bytes_right<1>(a);
    const auto at = [&](int i) { return i < 0 || i > 3 ? 0 : a[i]; };
    for (int i = 0; i < 4; ++i) {
      ASSERT_EQ(left[i], at(i - 1) << 8 | at(i - 2) >> 24);
      ASSERT_EQ(right[i], at(i) >> 8 | at(i + 1) << 24);
    }
  });
}

TEST(Words, BecomeDoublesAndComeBack) {
  for_words([](Words4 a, Words4 b) {
    const Doubles values = to_doubles(Ints4(a)), halves = reals(a, b), wide = reals(Wide2(a), Wide2(b)),
                  upper = spread(0x1p84), low = lower_half_below(upper, wide),
                  high = upper_half_below(upper, wide);
    const Ints4 back = truncate_to_ints(values + 0.5);
    const Words4 lower = low_words(halves);
    for (int i = 0; i < 4; ++i) {
      ASSERT_EQ(values[i], double(int32_t(a[i])));
      ASSERT_EQ(back[i], int32_t(values[i] + 0.5));
      ASSERT_EQ(bit_cast<uint64_t>(double(halves[i])), uint64_t(b[i]) << 32 | a[i]);
      ASSERT_EQ(lower[i], a[i]);
      const uint64_t bits = bit_cast<uint64_t>(double(wide[i]));
      ASSERT_EQ(bits, i < 2 ? Wide2(a)[i % 2] : Wide2(b)[i % 2]);
      ASSERT_EQ(low[i], 0x1p84 + double(uint32_t(bits)) * 0x1p32);
      ASSERT_EQ(high[i], 0x1p84 + double(bits >> 32) * 0x1p32);
    }
  });
  Doubles x = {-2.5, -0.5, 1.5, 1e300};
  pin(x);
  EXPECT_EQ(truncate_to_ints(x)[3], INT32_MIN);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(round<kDown>(x)[i], std::floor(x[i]));
    EXPECT_EQ(round<kToZero>(x)[i], std::trunc(x[i]));
  }
}

TEST(Words, GoThroughMemory) {
  uint32_t words[6] = {1, 2, 3, 4, 5, 6};
  store4(words + 1, load4(words + 2));
  EXPECT_TRUE(std::equal(words, words + 6, std::begin({1u, 3u, 4u, 5u, 6u, 6u})));
  int32_t ints[5] = {};
  store4(ints + 1, Ints4{-1, 2, -3, 4});
  EXPECT_TRUE(std::equal(ints, ints + 5, std::begin({0, -1, 2, -3, 4})));
}

}  // namespace
