// Geometric: the number of failures before the first success, by inversion.
//   L. Devroye, Non-Uniform Random Variate Generation, Springer (1986), X.2.
#include <immintrin.h>

#include "_math/scalar.hpp"
#include "distribution.hpp"
#include "vector_math.hpp"

using namespace orx::rng;

// A uniform can be exactly 0.
static int _vsLnCallBack(TefErrorContext* error) { return substitute(error, kLnOfZeroSingle); }

static void floor_to_int(const float* x, float factor, int n, int32_t* r) {
  int i = 0;
  for (; i + 4 <= n; i += 4)
    _mm_storeu_si128(reinterpret_cast<__m128i*>(r + i),
                     _mm_cvttps_epi32(_mm_floor_ps(_mm_load_ps(x + i) * _mm_set1_ps(factor))));
  for (; i < n; ++i) r[i] = _mm_cvttss_si32(_mm_floor_ss(_mm_setzero_ps(), _mm_set_ss(x[i] * factor)));
}

ORX_API int _kobiRngGeometric(int, KobStream* stream, int n, int32_t r[], double p) {
  const float factor = float(1 / __kobdLn(1 - p));
  const VectorMath vector_math(_vsLnCallBack);
  alignas(32) float buffer[kBlock];
  return in_blocks(n, [&](int done, int count) {
    const int status = uniform(stream, count, buffer, 0.0f, 1.0f);
    if (status < 0) return status;
    vector_math(orx_tef_kernel_sLn_ttab, count, buffer, buffer);
    floor_to_int(buffer, factor, count, r + done);
    return status;
  });
}
