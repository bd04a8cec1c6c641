// What distribution generators share: the block length, the accurate mode, uniforms of either precision.
#pragma once

#include <algorithm>

#include "_service/stream.hpp"

namespace orx::rng {

constexpr int kBlock = 1024;        // numbers in a stack buffer
constexpr int kAccurate = 1 << 30;  // this bit of the method word asks for the accurate mode

inline int uniform(KobStream* stream, int n, double* r, double a, double b) {
  return _kobdRngUniform(0, stream, n, r, a, b);
}
inline int uniform(KobStream* stream, int n, float* r, float a, float b) {
  return _kobsRngUniform(0, stream, n, r, a, b);
}

// Calls block(first, count) for stretches of at most kBlock out of n until one returns a negative status.
template <class Block>
int in_blocks(int n, Block block) {
  for (int done = 0, count; done < n; done += count) {
    count = std::min(n - done, kBlock);
    const int status = block(done, count);
    if (status < 0) return status;
  }
  return KOB_STATUS_OK;
}

}  // namespace orx::rng
