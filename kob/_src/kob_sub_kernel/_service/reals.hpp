// From 32-bit words to reals: w 2^-32 on [0, 1) carried to [a, b) as w ((b - a) 2^-32) + a. The product and
// the sum are rounded once each, in double; single precision is the double result rounded at the store. The
// vector form and the scalar form give the same bits.
#pragma once

#include <immintrin.h>

#include <cstdint>

namespace orx::brng {

class Word32ToReal {
 public:
  Word32ToReal(double a, double b) : scale_((b - a) * 0x1p-32), a_(a) {}

  // The processor converts signed words only: with the top bit flipped, the word is w - 2^31, and adding 2^31
  // is exact.
  __m256d operator()(__m128i w) const {
    const __m128i shifted = _mm_xor_si128(w, _mm_set1_epi32(INT32_MIN));
    return (_mm256_cvtepi32_pd(shifted) + _mm256_set1_pd(0x1p31)) * _mm256_set1_pd(scale_) +
           _mm256_set1_pd(a_);
  }
  double operator()(uint32_t w) const { return (int32_t(w ^ 0x80000000u) + 0x1p31) * scale_ + a_; }

  // Four numbers to r, at any alignment.
  void store(double* r, __m128i w) const { _mm256_storeu_pd(r, (*this)(w)); }
  void store(float* r, __m128i w) const { _mm_storeu_ps(r, _mm256_cvtpd_ps((*this)(w))); }

  // n numbers from n words in memory.
  template <class Real>
  void block(Real* r, const uint32_t* w, int n) const {
    int i = 0;
    for (; i + 4 <= n; i += 4) store(r + i, _mm_loadu_si128(reinterpret_cast<const __m128i*>(w + i)));
    for (; i < n; ++i) r[i] = Real((*this)(w[i]));
  }

 private:
  double scale_, a_;
};

}  // namespace orx::brng
