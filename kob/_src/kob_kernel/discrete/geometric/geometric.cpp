// Geometric: the number of failures before the first success, by inversion.
//   L. Devroye, Non-Uniform Random Variate Generation, Springer (1986), X.2.
#include <limits>

#include "_math/scalar.hpp"
#include "distribution.hpp"
#include "orx/base/simd/memory.hpp"

using namespace orx::rng;

// A uniform can be exactly 0.
static int _vsLnCallBack(TefErrorContext* error) { return on_any_error<float>(error); }

namespace {

namespace simd = orx::simd;
using Lanes = simd::Vec<float, 1>;

// floor(x), between 0 and 2^31 - 1, as the bits of integers; 0 for a NaN, which is 0 times infinity.
Lanes floor_to_counts(Lanes x) {
  const Lanes whole = simd::round<simd::kDown>(simd::max(x, simd::broadcast<Lanes>(0)));
  // A conversion that overflows gives 2^31, whose complement is the largest integer.
  const Lanes over = simd::not_below(whole, simd::broadcast<Lanes>(0x1p31f));
  return simd::bit_xor(simd::reals<Lanes>(simd::truncate_to_ints(whole)), over);
}

// x has room for whole vectors.
void floor_to_counts(float* x, float factor, int n, int32_t* r) {
  for (int i = 0; i < n; i += Lanes::kLanes) {
    const Lanes counts =
        floor_to_counts(simd::load_vectors<Lanes, true>(x + i) * simd::broadcast<Lanes>(factor));
    simd::store_first(reinterpret_cast<float*>(r + i), n - i, counts);
  }
}

int geometric(const VectorMath& math, KobStream* stream, int n, int32_t* r, double p) {
  // Where p is too small for 1 - p to tell, infinity of the sign that ln(1 - p) has.
  const double ln_of_failure = __kobdLn(1 - p);
  const float factor =
      ln_of_failure == 0 ? -std::numeric_limits<float>::infinity() : float(1 / ln_of_failure);
  alignas(64) float buffer[kBlock];
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
  return framed<geometric>(_vsLnCallBack, stream, n, r, p);
}
