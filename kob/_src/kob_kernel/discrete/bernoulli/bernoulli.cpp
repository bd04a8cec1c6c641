// Bernoulli: 1 with probability p, else 0.
#include "distribution.hpp"
#include "orx/base/bits.hpp"

namespace {

// Uniforms of single precision are made in the result's own memory. As they are not negative, they compare as
// the integers of their bits do.
int bernoulli(KobStream* stream, int n, int32_t* r, double p) {
  const int status = orx::rng::uniform(stream, n, reinterpret_cast<float*>(r));
  if (status < 0 || n < 1) return status;
  // Rounding to single precision can lift a uniform to 1, which is still below "certain".
  const int32_t threshold = float(p) >= 1 ? INT32_MAX : orx::bit_cast<int32_t>(float(p));
  for (int i = 0; i < n; ++i) r[i] = r[i] < threshold;
  return status;
}

}  // namespace

ORX_API int _kobiRngBernoulli(int, KobStream* stream, int n, int32_t r[], double p) {
  return orx::in_default_arithmetic([&] { return bernoulli(stream, n, r, p); });
}
