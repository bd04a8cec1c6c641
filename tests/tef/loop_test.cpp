// What all kernels owe: no element outside, the same result wherever an element stands, the caller's MXCSR.
#include <gtest/gtest.h>
#include <immintrin.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "functions.h"

namespace {

template <class T>
void check_every_count_and_place() {
  constexpr int room = 96;
  std::mt19937 random(1);
  std::uniform_real_distribution<double> uniform(0.001, 40.0);
  for (const auto& f : test::unary_functions<T>())
    for (int index = 0; index < 3; ++index) {
      alignas(64) T a[room], alone[room], r[room];
      for (int i = 0; i < room; ++i) {
        a[i] = static_cast<T>(uniform(random));
        f.ttab[index](1, a + i, alone + i);
      }
      for (int from = 0; from < 9; ++from)
        for (int to = 0; to < 9; to += 3)
          for (int n = 0; n < 80; n += n < 20 ? 1 : 7)
            for (bool in_place : {false, true}) {
              const T* in = in_place ? r + to : a + from;
              for (T& x : r) x = T(-77);
              if (in_place) std::memcpy(r + to, a + from, n * sizeof(T));
              f.ttab[index](n, in, r + to);
              for (int i = 0; i < to; ++i) ASSERT_EQ(r[i], T(-77)) << f.name;
              ASSERT_EQ(std::memcmp(r + to, alone + from, n * sizeof(T)), 0)
                  << f.name << " index " << index << " n " << n << " from " << from << " to " << to;
              for (int i = to + n; i < room; ++i) ASSERT_EQ(r[i], T(-77)) << f.name;
            }
    }
}

TEST(Loop, EveryCountAndPlaceSingles) { check_every_count_and_place<float>(); }
TEST(Loop, EveryCountAndPlaceDoubles) { check_every_count_and_place<double>(); }

TEST(Loop, ArraysThatAreNotAlignedToTheirElements) {
  alignas(8) char in[41 * 8 + 8], out[41 * 8 + 8];
  double a[41], expected[41];
  for (int i = 0; i < 41; ++i) a[i] = 0.3 + i;
  for (const auto& f : test::unary_functions<double>()) {
    f.ttab[1](41, a, expected);
    std::memcpy(in + 4, a, sizeof a);
    f.ttab[1](41, reinterpret_cast<double*>(in + 4), reinterpret_cast<double*>(out + 4));
    EXPECT_EQ(std::memcmp(out + 4, expected, sizeof expected), 0) << f.name;
  }
}

// Kernels compute in round-to-nearest with the flush that the mode asks for, and give MXCSR back bit for bit
// where they had to change it.
template <class T>
void check_control_word() {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_IGNORE);
  const unsigned caller = _mm_getcsr();
  T a[50], expected[50], r[50];
  for (int i = 0; i < 50; ++i) a[i] = T(0.1) + T(i) / 3;
  for (const auto& f : test::unary_functions<T>())
    for (int index = 0; index < 3; ++index) {
      _tefSetMode(TEF_FLUSH_OFF);
      f.ttab[index](50, a, expected);
      for (int flush : {TEF_FLUSH_OFF, TEF_FLUSH_ON}) {
        _tefSetMode(flush);
        for (unsigned rounding = 0; rounding < 4; ++rounding)
          for (unsigned bits : {0x0000u, 0x8000u, 0x0040u, 0x8040u}) {
            const unsigned csr = 0x1F80 | rounding << 13 | bits;
            const bool changed = (csr & 0xE040) != (flush == TEF_FLUSH_ON ? 0x8040u : 0u);
            _mm_setcsr(csr);
            f.ttab[index](50, a, r);
            const unsigned after = _mm_getcsr();
            _mm_setcsr(caller);
            if (changed && f.name.substr(1) != "Abs") {  // Abs touches no control word
              EXPECT_EQ(after, csr) << f.name;
            } else {
              EXPECT_EQ(after & ~0x3Fu, csr) << f.name;
            }
            if (f.name.substr(1) != "Abs") {
              EXPECT_EQ(std::memcmp(r, expected, sizeof r), 0) << f.name;
            }
            _mm_setcsr(csr);
            f.ttab[index](0, a, r);
            EXPECT_EQ(_mm_getcsr(), csr);
            _mm_setcsr(caller);
          }
      }
    }
  _tefSetMode(TEF_FLUSH_OFF);
}

TEST(Loop, ControlWordSingles) { check_control_word<float>(); }
TEST(Loop, ControlWordDoubles) { check_control_word<double>(); }

// Padding lanes raise nothing: one ordinary element leaves invalid, zero-divide and overflow alone.
TEST(Loop, PaddingRaisesNothing) {
  for (const auto& f : test::unary_functions<double>()) {
    const double a[1] = {0.75};
    double r[1];
    _mm_setcsr(0x1F80);
    f.ttab[1](1, a, r);
    EXPECT_EQ(_mm_getcsr() & 0x0D, 0u) << f.name;
  }
  _mm_setcsr(0x1F80);
}

std::vector<int> order;
int note_index(TefErrorContext* e) {
  order.push_back(e->index);
  if (e->index == 7) e->res1 = 99.0;
  return 0;
}

TEST(Loop, ErrorsComeInAscendingOrderAndMayChangeResults) {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_CALLBACK);
  _tefSetErrorCallBack(note_index);
  alignas(32) double a[41], r[41];
  for (int offset = 0; offset < 4; ++offset) {
    order.clear();
    for (double& x : a) x = 2.0;
    for (int i : {0, 1, 7, 8, 15, 22, 30}) a[offset + i] = i % 2 ? -1.0 : 0.0;
    a[offset + 3] = std::nan("");  // special, but no error
    _tefdLn(31, a + offset, r);
    EXPECT_EQ(order, (std::vector<int>{0, 1, 7, 8, 15, 22, 30}));
    EXPECT_EQ(r[7], 99.0);
    EXPECT_EQ(r[8], -HUGE_VAL);
    EXPECT_NEAR(r[9], std::log(2.0), 1e-15);
  }
}

}  // namespace
