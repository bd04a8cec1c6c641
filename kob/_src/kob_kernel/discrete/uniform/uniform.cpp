// Uniform integers a to b - 1: the whole part of a uniform real.
#include <immintrin.h>

#include "distribution.hpp"

using namespace orx::rng;

namespace {

// A real that was rounded up to b, or the largest numbers of some generators, would give b itself.
void floor_to_int(const double* x, int n, double largest, int32_t* r) {
  int i = 0;
  for (; i + 4 <= n; i += 4) {
    const __m256d whole = _mm256_min_pd(_mm256_floor_pd(_mm256_load_pd(x + i)), _mm256_set1_pd(largest));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(r + i), _mm256_cvttpd_epi32(whole));
  }
  for (; i < n; ++i) {
    const __m128d value = _mm_set_sd(x[i]);
    r[i] = _mm_cvttsd_si32(_mm_min_sd(_mm_floor_sd(value, value), _mm_set_sd(largest)));
  }
}

int integers(KobStream* stream, int n, int32_t* r, int32_t a, int32_t b) {
  alignas(32) double buffer[kBlock];
  const double largest = std::max(double(a), double(b) - 1);
  return in_blocks(n, [&](int done, int count) {
    const int status = uniform(stream, count, buffer, double(a), double(b));
    if (status >= 0) floor_to_int(buffer, count, largest, r + done);
    return status;
  });
}

}  // namespace

ORX_API int _kobiRngUniform(int, KobStream* stream, int n, int32_t r[], int32_t a, int32_t b) {
  return orx::in_default_arithmetic([&] { return integers(stream, n, r, a, b); });
}
