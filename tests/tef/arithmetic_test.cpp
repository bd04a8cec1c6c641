#include <gtest/gtest.h>
#include <immintrin.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <random>

#include "functions.h"

namespace {

template <class T>
using Binary = void(int, const T*, const T*, T*);

// Every count and alignment, apart and with r being either input or both, against plain arithmetic.
template <class T, class F>
void check(Binary<T>* kernel, F plain) {
  constexpr int room = 128;
  std::mt19937 random(1);
  std::uniform_real_distribution<T> uniform(-100, 100);
  alignas(64) T a[room], b[room], r[room];
  for (int i = 0; i < room; ++i) {
    a[i] = uniform(random);
    b[i] = uniform(random);
  }
  for (int offset = 0; offset < 9; ++offset)
    for (int n = 0; n < 110; ++n)
      for (int alias = 0; alias < 4; ++alias) {  // bit 0: r is the first input, bit 1: the second
        for (int i = 0; i < room; ++i) r[i] = alias == 2 ? b[i] : a[i];
        T* out = r + offset;
        kernel(n, alias & 1 ? out : a + offset, alias & 2 ? out : b + offset, out);
        for (int i = 0; i < room; ++i) {
          const T y = alias == 3 ? a[i] : b[i], old = alias == 2 ? b[i] : a[i];
          const bool inside = i >= offset && i < offset + n;
          ASSERT_EQ(r[i], inside ? plain(a[i], y) : old)
              << "n " << n << " offset " << offset << " alias " << alias;
        }
      }
}

TEST(Arithmetic, Binary) {
  check<float>(_tefsAdd, std::plus<float>());
  check<float>(_tefsSub, std::minus<float>());
  check<float>(_tefsMul, std::multiplies<float>());
  check<double>(_tefdAdd, std::plus<double>());
  check<double>(_tefdSub, std::minus<double>());
  check<double>(_tefdMul, std::multiplies<double>());
}

TEST(Arithmetic, Square) {
  check<float>([](int n, const float* a, const float*, float* r) { _tefsSqr(n, a, r); },
               [](float x, float) { return x * x; });
  double a[40], r[40];
  for (int i = 0; i < 40; ++i) a[i] = 1.0 / (i + 1);
  _tefdSqr(40, a, r);
  for (int i = 0; i < 40; ++i) EXPECT_EQ(r[i], a[i] * a[i]);
}

TEST(Arithmetic, MisalignedDoublesRunElementByElement) {
  char bytes[8 * 40 + 4];
  double* r = reinterpret_cast<double*>(bytes + 4);
  double a[40], b[40], got;
  for (int i = 0; i < 40; ++i) {
    a[i] = i;
    b[i] = 0.5;
  }
  _tefdAdd(40, a, b, r);
  for (int i = 0; i < 40; ++i) {
    std::memcpy(&got, bytes + 4 + 8 * i, 8);
    EXPECT_EQ(got, i + 0.5);
  }
}

TEST(Arithmetic, NegativeCountDoesNothing) {
  double a[1] = {1}, r[1] = {7};
  _tefdAdd(-1, a, a, r);
  _tefdSqr(-5, a, r);
  EXPECT_EQ(r[0], 7);
}

TEST(Arithmetic, Abs) {
  constexpr double inf = std::numeric_limits<double>::infinity();
  const double a[] = {-0.0, -3.5, 2.0, -inf, -std::nan(""), -4.9e-324, 1.0};
  double r[7];
  _tefdAbs(7, a, r);
  EXPECT_FALSE(std::signbit(r[0]));
  EXPECT_EQ(r[1], 3.5);
  EXPECT_EQ(r[3], inf);
  EXPECT_TRUE(std::isnan(r[4]));
  EXPECT_EQ(r[5], 4.9e-324);
  // Unlike with a cleared bit, denormals go where MXCSR sends them, and a signalling NaN is quieted.
  _mm_setcsr(0x1F80 | 0x0040);
  _tefdAbs(7, a, r);
  _mm_setcsr(0x1F80);
  EXPECT_EQ(r[5], 0.0);
  const uint32_t signalling = 0xFF800001;
  float s, t;
  std::memcpy(&s, &signalling, 4);
  _tefsAbs(1, &s, &t);
  uint32_t quiet;
  std::memcpy(&quiet, &t, 4);
  EXPECT_EQ(quiet & 0x7FC00000, 0x7FC00000u);
  EXPECT_TRUE(_mm_getcsr() & 1);
  _mm_setcsr(0x1F80);
}

TEST(Arithmetic, LinearFrac) {
  double a[21], b[21], r[21];
  for (int i = 0; i < 21; ++i) {
    a[i] = 0.1 * i;
    b[i] = i - 10;
  }
  _tefdLinearFrac(21, a, b, 3.0, -1.0, 0.5, 2.0, r);
  for (int i = 0; i < 21; ++i) EXPECT_EQ(r[i], (a[i] * 3.0 - 1.0) / (b[i] * 0.5 + 2.0));
  EXPECT_TRUE(std::isinf(r[6]));  // a pole stands in the result

  float c[7], s[7];
  for (int i = 0; i < 7; ++i) c[i] = static_cast<float>(i);
  _mm_setcsr(0x1F80 | 0x6000 | 0x8040);
  _tefsLinearFrac(7, c, c, 1.0f, 0.0f, 3.0f, 1.0f, s);
  EXPECT_EQ(_mm_getcsr(), 0x1F80u | 0x6000 | 0x8040);
  _mm_setcsr(0x1F80);
  for (int i = 0; i < 7; ++i) EXPECT_EQ(s[i], c[i] / (c[i] * 3.0f + 1.0f));
}

}  // namespace
