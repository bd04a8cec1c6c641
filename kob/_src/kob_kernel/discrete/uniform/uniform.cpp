// Uniform integers a to b - 1: the whole part of a uniform real.
#include <immintrin.h>

#include "distribution.hpp"

using namespace orx::rng;

static void floor_to_int(const double* x, int n, int32_t* r) {
  int i = 0;
  for (; i + 4 <= n; i += 4)
    _mm_storeu_si128(reinterpret_cast<__m128i*>(r + i),
                     _mm256_cvttpd_epi32(_mm256_floor_pd(_mm256_load_pd(x + i))));
  for (; i < n; ++i) r[i] = _mm_cvttsd_si32(_mm_floor_sd(_mm_setzero_pd(), _mm_set_sd(x[i])));
}

ORX_API int _kobiRngUniform(int, KobStream* stream, int n, int32_t r[], int32_t a, int32_t b) {
  alignas(32) double buffer[kBlock];
  return in_blocks(n, [&](int done, int count) {
    const int status = uniform(stream, count, buffer, double(a), double(b));
    if (status >= 0) floor_to_int(buffer, count, r + done);
    return status;
  });
}
