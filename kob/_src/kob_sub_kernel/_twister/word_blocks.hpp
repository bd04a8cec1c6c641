// How the twisters deliver: a state of words that is handed out from an index on and renewed as a whole. A
// block that a request takes whole goes from the recursion straight into the sink, so that it is never read
// again.
#pragma once

#include <cstdint>

#include "_service/reals.hpp"
#include "orx/kob.h"

namespace orx::brng {

// One template is the recursion word by word and four words at a time.
using simd::load;
using simd::store;

// Words for the places from `at` on of a sink, or for nobody.
template <class Sink>
struct SinkAt {
  Sink sink;
  int at;
  void operator()(int i, uint32_t w) const { sink(at + i, w); }
  void operator()(int i, Words4 w) const { sink(at + i, w); }
};
struct NoSink {
  template <class Word>
  void operator()(int, Word) const {}
};

// All words of a generator's source anew, for single numbers.
template <class Generator>
[[gnu::noinline]] void renew_all(KobStream* stream) {
  const auto source = Generator::engine(stream);
  source.renew(0, source.kWords, NoSink{});
  source.index() = 0;
}

// The next n words of a source to the places from `at` on of a sink. A source has kWords words at words(), of
// which those from index() on are not used yet; renew(from, to, sink) makes new ones of them, in fours or to
// the end, and tempered(w) makes outputs of them.
template <class Source, class Sink>
void draw(const Source source, int n, const Sink sink, int at = 0) {
  constexpr int all = Source::kWords;
  const auto hand_out = [&](int count) {
    const uint32_t* w = source.words() + source.index();
    const SinkAt<Sink> to{sink, at};
    int i = 0;
    for (; i + 4 <= count; i += 4) to(i, source.tempered(load<Words4>(w + i)));
    for (; i < count; ++i) to(i, source.tempered(w[i]));
    source.index() += uint32_t(count);
    at += count;
    n -= count;
  };
  const int left = all - int(source.index());
  if (n > left) {
    hand_out(left);
    for (; n >= all; n -= all, at += all) source.renew(0, all, SinkAt<Sink>{sink, at});
    if (n == 0) return;
    const int direct = n & ~3;
    source.renew(0, direct, SinkAt<Sink>{sink, at});
    source.renew(direct, all, NoSink{});
    source.index() = uint32_t(direct);
    at += direct;
    n -= direct;
  }
  if (n > 0) hand_out(n);
}

}  // namespace orx::brng
