// Words of 64 random bits, for numbers finer than 32 bits.
#pragma once

#include "_service/registry.hpp"

namespace orx::rng {

// From generators whose words are 32 random bits or more; two of 32 make one, the earlier in the low half.
inline int wide_words(KobStream* stream, int n, uint64_t* r) {
  if ((orx::brng::family_row(stream) + 1) << 20 == KOB_BRNG_R250)
    return _kobiRngUniformBits(0, stream, 2 * n, reinterpret_cast<uint32_t*>(r));
  return _kobiRngUniformBits64(0, stream, n, r);
}

}  // namespace orx::rng
