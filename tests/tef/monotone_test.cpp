// Functions that rise do so in class HA, from one number to the next: looked at where a kernel's method changes, at the
// edges of table cells and over the whole interval.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "orx/tef.h"

namespace {

template <class T>
using Kernel = void (*)(int, const T*, T*);

template <class T>
struct Rising {
  const char* name;
  Kernel<T> call;
  double from, to;
  std::vector<double> joints;  // where the method changes
};

// Consecutive numbers around x, as many as make the method's two sides meet.
template <class T>
void expect_rising_around(const Rising<T>& f, double x) {
  constexpr int kCount = 64;
  T a[kCount], r[kCount];
  a[0] = static_cast<T>(x);
  for (int i = 0; i < kCount / 2; ++i) a[0] = std::nextafter(a[0], static_cast<T>(f.from));
  for (int i = 1; i < kCount; ++i) a[i] = std::nextafter(a[i - 1], static_cast<T>(f.to));
  f.call(kCount, a, r);
  for (int i = 1; i < kCount; ++i) EXPECT_LE(r[i - 1], r[i]) << f.name << "(" << a[i] << ")";
}

template <class T>
void expect_rising(const Rising<T>& f) {
  for (double x : f.joints) expect_rising_around(f, x);
  std::mt19937 random(5);
  std::uniform_real_distribution<double> even(f.from, f.to), exponent(-30, 5);
  std::uniform_int_distribution<int> leading(0, 1023);
  for (int i = 0; i < 2000; ++i) {
    const double size = std::exp2(std::floor(exponent(random))) * (1 + leading(random) / 1024.0);
    for (double x : {even(random), size, -size, 1 + size, 1 - size})
      if (x >= f.from && x <= f.to) expect_rising_around(f, x);
  }
}

// Between the angles of the table of Atan, on both sides of 1, and its ends.
std::vector<double> angles_between() {
  std::vector<double> all = {0, 1, 0x1p-120, 0x1p60};
  for (int i = 1; i < 32; i += 2) all.insert(all.end(), {i / 32.0, 32.0 / i, -i / 32.0});
  return all;
}

TEST(Monotone, Double) {
  const std::vector<Rising<double>> functions = {
      {"dTanh", _tefdTanh, -25, 25, {0, 0.0625, -0.0625, 4, 8, 16, 19.0616, 19.25, -19.25}},
      {"dSinh", _tefdSinh, -710, 710, {0, 0.0625, -0.0625, 707.69983, 709.0895657128241}},
      {"dAsinh", _tefdAsinh, -0x1p1000, 0x1p1000, {0, 0.015625, -0.015625, 0x1p27, 0x1p100, 0x1p500}},
      {"dAcosh", _tefdAcosh, 1, 0x1p1000, {1, 0x1.0008p+0, 0x1p27, 0x1p100, 0x1p500}},
      {"dAsin", _tefdAsin, -1, 1, {0, 0x1p-60, 0.5, -0.5}},
      {"dAtan", _tefdAtan, -0x1p100, 0x1p100, angles_between()},
      {"dAtanh", _tefdAtanh, -0x1.fffffffffffffp-1, 0x1.fffffffffffffp-1, {0, 0.015625, -0.015625, 0.5}},
  };
  for (const auto& f : functions) expect_rising(f);
}

TEST(Monotone, Single) {
  const std::vector<Rising<float>> functions = {
      {"sTanh", _tefsTanh, -12, 12, {0, 0.0625, -0.0625, 4, 8, 9.011, 10}},
      {"sSinh", _tefsSinh, -89.41f, 89.41f, {0, 89, 88.72283}},
      {"sAsinh", _tefsAsinh, -0x1p120, 0x1p120, {0, 0x1p-20, -0x1p-20, 0x1p60, 0x1p64}},
      {"sAcosh", _tefsAcosh, 1, 0x1p120, {1, 0x1p60, 0x1p64}},
      {"sAsin", _tefsAsin, -1, 1, {0, 0x1p-40, 0.5, -0.5}},
      {"sAtan", _tefsAtan, -0x1p100, 0x1p100, angles_between()},
      {"sAtanh", _tefsAtanh, -0x1.fffffep-1, 0x1.fffffep-1, {0, 0x1p-20, -0x1p-20, 0.5}},
  };
  for (const auto& f : functions) expect_rising(f);
}

}  // namespace
