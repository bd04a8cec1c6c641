// Powers in the rings that jumps of the generators need, by binary exponentiation.
#include "_math/modular.hpp"
#include "orx/base/api.hpp"
#include "orx/kob.h"

using namespace orx::brng;

namespace {

template <class Element, class Multiply>
Element power(Element base, uint64_t n, Element one, Multiply multiply) {
  Element result = one;
  for (; n; n >>= 1) {
    if (n & 1) result = multiply(result, base);
    if (n > 1) base = multiply(base, base);
  }
  return result;
}

constexpr uint64_t join(uint32_t low, uint32_t high) { return low | uint64_t(high) << 32; }

// A polynomial c0 + c1 x + c2 x^2.
struct Poly3 {
  uint32_t c[3];
};

}  // namespace

ORX_API uint32_t __kobiPowMod(uint32_t a, uint32_t n_low, uint32_t n_high, uint32_t m) {
  return power(a % m, join(n_low, n_high), 1u, [m](uint32_t x, uint32_t y) { return multiply_mod(x, y, m); });
}

ORX_API uint32_t __kobiPowMod2P31M1(uint32_t a, uint32_t n_low, uint32_t n_high) {
  return power(multiply_2p31m1(a, 1), join(n_low, n_high), 1u, multiply_2p31m1);
}

ORX_API uint64_t __kobiPowMod2P59(uint32_t a_low, uint32_t a_high, uint32_t n_low, uint32_t n_high) {
  return power(join(a_low, a_high) & kMask59, join(n_low, n_high), uint64_t(1),
               [](uint64_t x, uint64_t y) { return x * y & kMask59; });
}

// C satisfies its characteristic equation C^3 = row[0] C^2 + row[1] C + row[2], so C^n is x^n reduced by it:
// three numbers to carry instead of nine.
ORX_API void __kobiVect3PowMod(uint32_t vector[3], const uint32_t row[3], uint32_t m, uint32_t n_low,
                               uint32_t n_high) {
  const auto dot = [m](const uint32_t* x, const uint32_t* y) {
    uint32_t sum = 0;
    for (int i = 0; i < 3; ++i) sum = add_mod(sum, multiply_mod(x[i], y[i], m), m);
    return sum;
  };
  const auto multiply = [row, m](const Poly3& f, const Poly3& g) {
    uint32_t product[5] = {};
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j)
        product[i + j] = add_mod(product[i + j], multiply_mod(f.c[i], g.c[j], m), m);
    for (int top = 4; top > 2; --top)
      for (int i = 0; i < 3; ++i)
        product[top - 1 - i] = add_mod(product[top - 1 - i], multiply_mod(product[top], row[i], m), m);
    return Poly3{{product[0], product[1], product[2]}};
  };
  const Poly3 jump = power(Poly3{{0, 1, 0}}, join(n_low, n_high), Poly3{{1, 0, 0}}, multiply);

  // v, C v, C^2 v are windows of one sequence: s2 is the newest element of v.
  uint32_t s[5] = {vector[2] % m, vector[1] % m, vector[0] % m};
  for (int i = 3; i < 5; ++i) {
    const uint32_t newest_first[3] = {s[i - 1], s[i - 2], s[i - 3]};
    s[i] = dot(row, newest_first);
  }
  for (int i = 0; i < 3; ++i) vector[i] = dot(jump.c, s + 2 - i);
}
