// Elements of a block that a test holds of: where they are, or they themselves moved together. Four at a time, by a table:
// which ones there are cannot be foretold, so that a branch for each would mostly be taken wrongly.
#pragma once

#include "orx/base/simd/words.hpp"

namespace orx::rng {

using simd::Doubles;

// The places of the bits that are set in four, lowest first.
struct SetBits {
  alignas(16) int32_t place[16][4] = {};

  constexpr SetBits() {
    for (int bits = 0; bits < 16; ++bits)
      for (int bit = 0, found = 0; bit < 4; ++bit)
        if (bits >> bit & 1) place[bits][found++] = bit;
  }
};
inline constexpr SetBits kSetBits;

// Calls four(i, bits) for i = 0, 4, ...: bit k of four tells whether i + k is below `count` and test(x[i + k]) holds,
// which is a comparison of four doubles. x has room for whole fours.
template <class Test, class Four>
[[gnu::always_inline]] inline void by_fours(const double* x, int count, const Test& test, const Four& four) {
  for (int i = 0; i < count; i += 4) {
    unsigned bits = simd::native::signs(Doubles(test(simd::load4(x + i))));
    if (count - i < 4) bits &= (1u << (count - i)) - 1;
    four(i, bits);
  }
}

// The indices of elements that test(x[i]) holds of; their number. `index` too has room for whole fours.
template <class Test>
[[gnu::always_inline]] inline int where(const double* x, int count, int32_t* index, const Test& test) {
  int found = 0;
  by_fours(x, count, test, [&](int i, unsigned bits) {
    simd::store4(index + found, simd::load<simd::Ints4, true>(kSetBits.place[bits]) + i);
    found += __builtin_popcount(bits);
  });
  return found;
}

// Numbers whose margin is not negative come to the front in their order; how many there are. Both arrays have room for
// whole fours.
template <class Number>
int keep_accepted(const double* margin, int count, Number* x) {
  int found = 0;
  by_fours(
      margin, count, [](Doubles m) { return m >= Doubles{}; },
      [&](int i, unsigned bits) {
        const int32_t* const place = kSetBits.place[bits];
        const Number a = x[i + place[0]], b = x[i + place[1]], c = x[i + place[2]], d = x[i + place[3]];
        x[found] = a;
        x[found + 1] = b;
        x[found + 2] = c;
        x[found + 3] = d;
        found += __builtin_popcount(bits);
      });
  return found;
}

}  // namespace orx::rng
