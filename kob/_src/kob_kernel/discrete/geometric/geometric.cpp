// Geometric: the number of failures before the first success, by inversion.
//   L. Devroye, Non-Uniform Random Variate Generation, Springer (1986), X.2.
#include <immintrin.h>

#include <limits>

#include "_math/scalar.hpp"
#include "distribution.hpp"

using namespace orx::rng;

// A uniform can be exactly 0.
static int _vsLnCallBack(TefErrorContext* error) { return on_any_error<float>(error); }

namespace {

// floor(x), between 0 and 2^31 - 1; 0 for a NaN, which is 0 times infinity.
__m128i floor_to_count(__m128 x) {
  const __m128 whole = _mm_floor_ps(_mm_max_ps(x, _mm_setzero_ps()));
  // A conversion that overflows gives 2^31, whose complement is the largest integer.
  const __m128 over = _mm_cmpge_ps(whole, _mm_set1_ps(0x1p31f));
  return _mm_xor_si128(_mm_cvttps_epi32(whole), _mm_castps_si128(over));
}

void floor_to_counts(const float* x, float factor, int n, int32_t* r) {
  int i = 0;
  for (; i + 4 <= n; i += 4)
    _mm_storeu_si128(reinterpret_cast<__m128i*>(r + i),
                     floor_to_count(_mm_load_ps(x + i) * _mm_set1_ps(factor)));
  for (; i < n; ++i) r[i] = _mm_cvtsi128_si32(floor_to_count(_mm_set_ss(x[i] * factor)));
}

int geometric(const VectorMath& math, KobStream* stream, int n, int32_t* r, double p) {
  // Where p is too small for 1 - p to tell, infinity of the sign that ln(1 - p) has.
  const double ln_of_failure = __kobdLn(1 - p);
  const float factor =
      ln_of_failure == 0 ? -std::numeric_limits<float>::infinity() : float(1 / ln_of_failure);
  alignas(32) float buffer[kBlock];
  return in_blocks(n, [&](int done, int count) {
    const int status = uniform(stream, count, buffer);
    if (status < 0) return status;
    math.ln(count, buffer, buffer);
    floor_to_counts(buffer, factor, count, r + done);
    return status;
  });
}

}  // namespace

ORX_API int _kobiRngGeometric(int, KobStream* stream, int n, int32_t r[], double p) {
  return framed(_vsLnCallBack, geometric, stream, n, r, p);
}
