// Bernoulli: 1 with probability p, else 0.
#include <cstring>

#include "distribution.hpp"

// Uniforms of single precision are made in the result's own memory. As they are not negative, they compare as
// the integers of their bits do.
ORX_API int _kobiRngBernoulli(int, KobStream* stream, int n, int32_t r[], double p) {
  const int status = orx::rng::uniform(stream, n, reinterpret_cast<float*>(r), 0.0f, 1.0f);
  if (status < 0 || n < 1) return status;
  const float threshold = float(p);
  int32_t bits;
  memcpy(&bits, &threshold, sizeof bits);
  // Rounding to single precision can lift a uniform to 1, which is still below "certain".
  if (threshold >= 1) bits = INT32_MAX;
  for (int i = 0; i < n; ++i) r[i] = r[i] < bits;
  return status;
}
