// What Boost.Random and GSL have of the digital sequences: the same in base 2, in the dimensions that they have.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

struct QuasiPeer {
  const char* library;
  std::function<void(double* r, int points)> fill;  // points of [0, 1)^dimension
};

std::vector<QuasiPeer> quasi_peers(uint32_t id, unsigned dimension);
