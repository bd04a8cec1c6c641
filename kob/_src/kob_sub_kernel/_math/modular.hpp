// Modular arithmetic on 32-bit words.
#pragma once

#include <cstdint>

namespace orx::brng {

constexpr uint32_t k2p31m1 = 0x7FFFFFFF;
constexpr uint64_t kMask59 = (uint64_t(1) << 59) - 1;

constexpr uint32_t multiply_mod(uint32_t x, uint32_t y, uint32_t m) { return uint32_t(uint64_t(x) * y % m); }

// For x and y below m.
constexpr uint32_t add_mod(uint32_t x, uint32_t y, uint32_t m) { return x >= m - y ? x - (m - y) : x + y; }

// x y mod 2^31 - 1 for y at most 2^31 - 1: the bits from 31 up are worth as much as the low ones.
constexpr uint32_t multiply_2p31m1(uint32_t x, uint32_t y) {
  const uint64_t product = uint64_t(x) * y;
  const uint64_t once = (product & k2p31m1) + (product >> 31);
  const uint32_t twice = uint32_t(once & k2p31m1) + uint32_t(once >> 31);
  return twice >= k2p31m1 ? twice - k2p31m1 : twice;
}

}  // namespace orx::brng
