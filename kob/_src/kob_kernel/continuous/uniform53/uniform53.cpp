// Uniform doubles of 53 random bits on [a, b).
#include <immintrin.h>

#include "distribution.hpp"
#include "orx/base/bits.hpp"
#include "wide_words.hpp"

namespace {

using namespace orx::rng;

// The largest double below b, which is finite.
double just_below(double b) {
  const int64_t bits = orx::bit_cast<int64_t>(b);
  return b == 0 ? -0x1p-1074 : orx::bit_cast<double>(b > 0 ? bits - 1 : bits + 1);
}

// The upper 53 bits of a word as a double: the halves stand in the low bits of 2^84 and of 2^52, and only what
// is exact is added. Then a + (b - a) u, which rounding must not carry to b.
class Conversion {
 public:
  Conversion(double a, double b) : a_(a), scale_((b - a) * 0x1p-64), below_(just_below(b)) {}

  __m256d operator()(const uint64_t* w) const {
    const __m256 words = _mm256_loadu_ps(reinterpret_cast<const float*>(w));
    const __m256 upper = _mm256_castpd_ps(_mm256_set1_pd(0x1p84)),
                 lower = _mm256_castpd_ps(_mm256_set1_pd(0x1p52));
    const __m256 kept = _mm256_castsi256_ps(_mm256_set1_epi64x(0xFFFFF800));
    const __m256d high = _mm256_castps_pd(_mm256_blend_ps(_mm256_permute_ps(words, 0xF5), upper, 0xAA));
    const __m256d low = _mm256_castps_pd(_mm256_or_ps(_mm256_and_ps(words, kept), lower));
    const __m256d u = high - _mm256_set1_pd(0x1p84 + 0x1p52) + low;
    return _mm256_min_pd(u * _mm256_set1_pd(scale_) + _mm256_set1_pd(a_), _mm256_set1_pd(below_));
  }

 private:
  double a_, scale_, below_;
};

int uniforms(KobStream* stream, int n, double* r, double a, double b) {
  if (!(a < b)) return KOB_ERROR_BAD_ARG;
  const Conversion converted(a, b);
  alignas(32) uint64_t words[kBlock];
  return in_blocks(n, [&](int done, int count) {
    const int status = wide_words(stream, count, words);
    if (status < 0) return status;
    int i = 0;
    for (; i + 4 <= count; i += 4) _mm256_storeu_pd(r + done + i, converted(words + i));
    if (i == count) return status;
    std::fill(words + count, words + i + 4, 0);
    const __m256d last = converted(words + i);
    for (int j = 0; i < count; ++i, ++j) r[done + i] = last[j];
    return status;
  });
}

}  // namespace

ORX_API int orx_kob_dRngUniform53(int, KobStream* stream, int n, double r[], double a, double b) {
  return orx::in_default_arithmetic([&] { return uniforms(stream, n, r, a, b); });
}
