// Uniform integers a to b - 1: the whole part of a uniform real.
#include "distribution.hpp"
#include "orx/base/simd/words.hpp"

using namespace orx::rng;
namespace simd = orx::simd;

namespace {

// A real that was rounded up to b, or the largest numbers of some generators, would give b itself.
void floor_to_int(const double* x, int n, double largest, int32_t* r) {
  int i = 0;
  for (; i + 4 <= n; i += 4)
    simd::store4(r + i, simd::truncate_to_ints(simd::lesser(simd::round<simd::kDown>(simd::load4(x + i)),
                                                            simd::spread(largest))));
  for (; i < n; ++i) r[i] = int32_t(std::min(__builtin_floor(x[i]), largest));
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
