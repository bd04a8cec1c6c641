// What Boost.Random and GSL have for a generator: the same one where they have it, else the nearest of its kind.
#pragma once

#include <cstdint>
#include <vector>

struct Peer {
  uint32_t id;  // of our generator
  const char* library;
  const char* generator;
  void (*fill)(double* r, int n);  // numbers on [0, 1)
};

const std::vector<Peer>& peers();
