// Where generated numbers go: sinks that take them four at a time or singly, as raw words or as reals on [a,
// b). Sinks of words have lanes, too: a form of four words that can be XORed word by word and put out with
// little work.
//
// A real is u s + a, with u the generator's number and s = (b - a) / (size of its range): the product and the
// sum are rounded once each, in double; single precision is the double result rounded at the store. The
// vector form and the scalar form give the same bits.
#pragma once

#include <cstdint>

#include "orx/base/simd/words.hpp"

namespace orx::brng {

namespace simd = orx::simd;
using simd::Doubles;
using simd::Ints4;
using simd::load4;
using simd::spread;
using simd::store4;
using simd::Wide2;
using simd::Words4;

// The processor converts signed words only: with the top bit flipped the word is w - 2^31, and adding 2^31 is
// exact.
inline double word_to_double(uint32_t w) { return int32_t(w ^ 0x80000000u) + 0x1p31; }

// The way back, for integers from 0 to 2^32 - 1.
inline Words4 double_to_word(Doubles x) { return Words4(simd::truncate_to_ints(x - 0x1p31)) ^ 0x80000000; }
inline uint32_t double_to_word(double x) { return uint32_t(int32_t(x - 0x1p31)) ^ 0x80000000u; }

// Numbers given as doubles, to r.
template <class Real>
class RealSink {
 public:
  RealSink(Real* r, double a, double scale) : r_(r), scale_(scale), a_(a) {}
  void operator()(int i, Doubles u) const { store4(r_ + i, u * scale_ + a_); }
  void operator()(int i, double u) const { r_[i] = Real(u * scale_ + a_); }

 private:
  Real* r_;
  double scale_, a_;
};

// Four words as the lower halves of doubles, whose upper half makes them 2^e + w 2^(e - 52).
template <int e>
struct DoubleLanes {
  using Lane = Doubles;
  static Lane lane(Words4 w) { return simd::reals(w, uint32_t((e + 1023) << 20) + Words4{}); }
  static Lane step(Words4 w) { return simd::reals(w, Words4{}); }
  static Lane moved(Lane x, Lane step) { return simd::native::bit_xor(x, step); }
  static Doubles fraction(Lane x) { return x - double(int64_t(1) << e); }
  static Words4 words(Lane x) { return simd::low_words(x); }
};

struct WordLanes {
  using Lane = Words4;
  static Lane lane(Words4 w) { return w; }
  static Lane step(Words4 w) { return w; }
  static Lane moved(Lane x, Lane step) { return x ^ step; }
  static Words4 words(Lane x) { return x; }
};

// Numbers given as unsigned 32-bit words, to reals.
template <class Real>
class Word32Sink : public DoubleLanes<52>, RealSink<Real> {
 public:
  Word32Sink(Real* r, Real a, Real b) : RealSink<Real>(r, a, (double(b) - double(a)) * 0x1p-32) {}
  void operator()(int i, Words4 w) const { put(i, lane(w)); }
  void operator()(int i, uint32_t w) const { RealSink<Real>::operator()(i, word_to_double(w)); }
  void put(int i, Lane x) const { RealSink<Real>::operator()(i, fraction(x)); }
};

// The same for doubles on [0, 1), where the scale is a matter of the lanes' exponent.
class UnitSink : public DoubleLanes<20> {
 public:
  explicit UnitSink(double* r) : r_(r) {}
  void operator()(int i, Words4 w) const { put(i, lane(w)); }
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
  void operator()(int i, Words4 w) const { store4(r_ + i, w); }
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
