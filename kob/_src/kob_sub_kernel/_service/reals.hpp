// Where generated numbers go: sinks that take them four at a time or singly, as raw words or as reals on [a,
// b). Sinks of words have lanes, too: a form of four words that can be XORed word by word and put out with
// little work.
//
// A real is u s + a, with u the generator's number and s = (b - a) / (size of its range): the product and the
// sum are rounded once each, in double; single precision is the double result rounded at the store. The
// vector form and the scalar form give the same bits.
#pragma once

#include <immintrin.h>

#include <cstdint>

namespace orx::brng {

inline void store4(double* r, __m256d x) { _mm256_storeu_pd(r, x); }
inline void store4(float* r, __m256d x) { _mm_storeu_ps(r, _mm256_cvtpd_ps(x)); }

inline __m128i load4(const uint32_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
inline void store4(uint32_t* p, __m128i x) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), x); }

// The processor converts signed words only: with the top bit flipped the word is w - 2^31, and adding 2^31 is
// exact.
inline double word_to_double(uint32_t w) { return int32_t(w ^ 0x80000000u) + 0x1p31; }

// The way back, for integers from 0 to 2^32 - 1.
inline __m128i double_to_word(__m256d x) {
  return _mm_xor_si128(_mm256_cvttpd_epi32(x - _mm256_set1_pd(0x1p31)), _mm_set1_epi32(INT32_MIN));
}
inline uint32_t double_to_word(double x) { return uint32_t(int32_t(x - 0x1p31)) ^ 0x80000000u; }

// Numbers given as doubles, to r.
template <class Real>
class RealSink {
 public:
  RealSink(Real* r, double a, double scale) : r_(r), scale_(scale), a_(a) {}
  void operator()(int i, __m256d u) const { store4(r_ + i, u * _mm256_set1_pd(scale_) + _mm256_set1_pd(a_)); }
  void operator()(int i, double u) const { r_[i] = Real(u * scale_ + a_); }

 private:
  Real* r_;
  double scale_, a_;
};

// Four words as the lower halves of doubles, whose upper half makes them 2^e + w 2^(e - 52).
template <int e>
struct DoubleLanes {
  using Lane = __m256d;
  static Lane lane(__m128i w) { return interleaved(w, _mm_set1_epi32((e + 1023) << 20)); }
  static Lane step(__m128i w) { return interleaved(w, _mm_setzero_si128()); }
  static Lane moved(Lane x, Lane step) { return _mm256_xor_pd(x, step); }
  static __m256d fraction(Lane x) { return x - _mm256_set1_pd(double(int64_t(1) << e)); }
  static __m128i words(Lane x) {
    const __m128 low = _mm_castpd_ps(_mm256_castpd256_pd128(x)),
                 high = _mm_castpd_ps(_mm256_extractf128_pd(x, 1));
    return _mm_castps_si128(_mm_shuffle_ps(low, high, _MM_SHUFFLE(2, 0, 2, 0)));
  }

 private:
  static Lane interleaved(__m128i w, __m128i upper) {
    return _mm256_castsi256_pd(_mm256_insertf128_si256(_mm256_castsi128_si256(_mm_unpacklo_epi32(w, upper)),
                                                       _mm_unpackhi_epi32(w, upper), 1));
  }
};

struct WordLanes {
  using Lane = __m128i;
  static Lane lane(__m128i w) { return w; }
  static Lane step(__m128i w) { return w; }
  static Lane moved(Lane x, Lane step) { return _mm_xor_si128(x, step); }
  static __m128i words(Lane x) { return x; }
};

// Numbers given as unsigned 32-bit words, to reals.
template <class Real>
class Word32Sink : public DoubleLanes<52>, RealSink<Real> {
 public:
  Word32Sink(Real* r, Real a, Real b) : RealSink<Real>(r, a, (double(b) - double(a)) * 0x1p-32) {}
  void operator()(int i, __m128i w) const { put(i, lane(w)); }
  void operator()(int i, uint32_t w) const { RealSink<Real>::operator()(i, word_to_double(w)); }
  void put(int i, Lane x) const { RealSink<Real>::operator()(i, fraction(x)); }
};

// The same for doubles on [0, 1), where the scale is a matter of the lanes' exponent.
class UnitSink : public DoubleLanes<20> {
 public:
  explicit UnitSink(double* r) : r_(r) {}
  void operator()(int i, __m128i w) const { put(i, lane(w)); }
  void operator()(int i, uint32_t w) const { r_[i] = word_to_double(w) * 0x1p-32; }
  void put(int i, Lane x) const { store4(r_ + i, fraction(x)); }

 private:
  double* r_;
};

// Raw 32-bit words.
template <>
class Word32Sink<uint32_t> : public WordLanes {
 public:
  explicit Word32Sink(uint32_t* r) : r_(r) {}
  void operator()(int i, __m128i w) const { store4(r_ + i, w); }
  void operator()(int i, uint32_t w) const { r_[i] = w; }
  void put(int i, Lane x) const { store4(r_ + i, x); }

 private:
  uint32_t* r_;
};

// Hands the sink for words as reals on [a, b) to use.
template <class Real, class Use>
int with_sink(Real* r, Real a, Real b, const Use& use) {
  if constexpr (sizeof(Real) == sizeof(double))
    if (a == 0 && b == 1) return use(UnitSink(r));
  return use(Word32Sink<Real>(r, a, b));
}

}  // namespace orx::brng
