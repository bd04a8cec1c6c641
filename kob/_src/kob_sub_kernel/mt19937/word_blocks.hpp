// How the twisters deliver: a state of words that is handed out from Index on and renewed as a whole. A sink takes
// the words, four at a time where it can, and stores them raw or as reals; a block that a request takes whole goes
// from the recursion straight into the sink, so that it is never read again.
#pragma once

#include <cstddef>
#include <cstdint>

#include "kob_sub_kernel/_service/reals.hpp"

namespace orx::brng {

// GCC and Clang give these the operators of uint32_t, so that one template is the recursion word by word and four
// words at a time.
typedef uint32_t Words4 __attribute__((vector_size(16)));
typedef uint32_t Words4Unaligned __attribute__((vector_size(16), aligned(4), may_alias));

inline Words4 load4(const uint32_t* w) { return *reinterpret_cast<const Words4Unaligned*>(w); }
inline void store4(uint32_t* w, Words4 x) { *reinterpret_cast<Words4Unaligned*>(w) = x; }

struct NoSink {
  void put(Words4) {}
  void put(uint32_t) {}
};

class WordSink {
 public:
  explicit WordSink(uint32_t* r) : r_(r) {}
  void put(Words4 w) { store4(r_, w), r_ += 4; }
  void put(uint32_t w) { *r_++ = w; }

 private:
  uint32_t* r_;
};

template <class Real>
class RealSink {
 public:
  RealSink(Real* r, Real a, Real b) : to_real_(a, b), r_(r) {}
  void put(Words4 w) { to_real_.store(r_, reinterpret_cast<__m128i>(w)), r_ += 4; }
  void put(uint32_t w) { *r_++ = Real(to_real_(w)); }

 private:
  Word32ToReal to_real_;
  Real* r_;
};

// A source has kWords words at words(), of which those from index() on are not used yet, renew(sink) that makes all
// of them new, and tempered(w) that makes outputs of words of the state. Sinks go in and come back by value, so that
// the place they have reached stays in a register.
template <class Source, class Sink>
Sink hand_out(const Source& source, const uint32_t* w, int n, Sink sink) {
  int i = 0;
  for (; i + 4 <= n; i += 4) sink.put(source.tempered(load4(w + i)));
  for (; i < n; ++i) sink.put(source.tempered(w[i]));
  return sink;
}

// The next n words of a source to the sink.
template <class Source, class Sink>
Sink draw(const Source& source, ptrdiff_t n, Sink sink) {
  if (n <= 0) return sink;
  constexpr int kWords = Source::kWords;
  uint32_t& index = source.index();
  const int left = kWords - int(index);
  if (n > left) {
    sink = hand_out(source, source.words() + index, left, sink);
    for (n -= left; n > kWords; n -= kWords) sink = source.renew(sink);
    source.renew(NoSink{});
    index = 0;
  }
  sink = hand_out(source, source.words() + index, int(n), sink);
  index += uint32_t(n);
  return sink;
}

}  // namespace orx::brng
