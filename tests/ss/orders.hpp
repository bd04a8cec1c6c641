// Orders in which the tests of sorts and summaries take their numbers.
#pragma once

#include <cmath>
#include <cstdint>

// A number of 32 bits that looks random (the finalizer of MurmurHash3).
inline uint32_t scrambled(uint32_t i) {
  i = (i ^ i >> 16) * 0x85EBCA6Bu;
  i = (i ^ i >> 13) * 0xC2B2AE35u;
  return i ^ i >> 16;
}

inline uint32_t reversed_bits(uint32_t i) {
  uint32_t r = 0;
  for (int k = 0; k < 32; ++k) r |= (i >> k & 1) << (31 - k);
  return r;
}

// Number i of n in orders that are hard on a sort or on a summary, or on a careless one.
const struct {
  const char* name;
  double (*value)(int i, int n);
} data_orders[] = {
    {"random", [](int i, int) { return double(scrambled(i)); }},
    {"sorted", [](int i, int) { return double(i); }},
    {"reversed", [](int i, int) { return double(-i); }},
    {"constant", [](int, int) { return 3.; }},
    {"few values", [](int i, int) { return double(scrambled(i) % 5); }},
    {"from the ends", [](int i, int n) { return double(i % 2 ? n - i : i); }},        // into the middle
    {"from the middle", [](int i, int n) { return double(i % 2 ? n + i : n - i); }},  // always an extreme
    {"growing waves", [](int i, int n) { return std::ldexp(i % 1000, i / (n / 50 + 1)); }},
    // Each block interleaves evenly with all before it.
    {"bits reversed", [](int i, int) { return double(reversed_bits(i)); }},
};
