// The Mersenne twister of M. Matsumoto and T. Nishimura, ACM Trans. Model. Comput. Simul. 8 (1998) 3-30:
// x(k+N) = x(k+M) ^ (y >> 1) ^ (y odd ? A : 0), where y has the upper bits of x(k) and the lower bits of x(k+1).
#pragma once

#include <algorithm>

#include "kob_sub_kernel/_service/stream.hpp"
#include "kob_sub_kernel/mt19937/word_blocks.hpp"

namespace orx::brng {

template <int N, int M, uint32_t kLowerMask, int kFirstShift>
class Twister {
 public:
  static constexpr int kWords = N;

  Twister(uint32_t* mt, uint32_t* index, uint32_t matrix_a, uint32_t mask_b, uint32_t mask_c)
      : mt_(mt), index_(index), matrix_a_(matrix_a), mask_b_(mask_b), mask_c_(mask_c) {}

  uint32_t* words() const { return mt_; }
  uint32_t& index() const { return *index_; }

  template <class Word>
  Word tempered(Word y) const {
    y ^= y >> kFirstShift;
    y ^= (y << 7) & mask_b_;
    y ^= (y << 15) & mask_c_;
    return y ^ (y >> 18);
  }

  // Replaces each word by the one N later, in place. The words at k + M are ahead of k at first and behind it, where
  // they are new already, from N - M on; one group of four stands astride.
  template <class Sink>
  Sink renew(Sink sink) const {
    constexpr int kAstride = (N - M) & ~3, kAhead = N - M - kAstride;
    static_assert(kAhead == 3, "what the shuffle below takes");
    for (int k = 0; k < kAstride; k += 4) put(k, load4(mt_ + k + 1), load4(mt_ + k + M), sink);
    put(kAstride, load4(mt_ + kAstride + 1), last3_first1(), sink);
    int k = kAstride + 4;
    for (; k + 4 < N; k += 4) put(k, load4(mt_ + k + 1), load4(mt_ + k + M - N), sink);
    if constexpr (N % 4 == 0)
      put(k, last3_first1(), load4(mt_ + k + M - N), sink);
    else
      for (; k < N; ++k) put(k, mt_[(k + 1) % N], mt_[k + M - N], sink);
    return sink;
  }

  // Initialisation by array. An empty key counts as the single word 1.
  static void seed(uint32_t* mt, int n, const uint32_t* key) {
    const uint32_t one = 1;
    if (n < 1) n = 1, key = &one;
    mt[0] = 19650218;
    for (int i = 1; i < N; ++i) mt[i] = 1812433253 * (mt[i - 1] ^ (mt[i - 1] >> 30)) + i;
    int i = 1;
    const auto mixed = [&](uint32_t factor) { return mt[i] ^ ((mt[i - 1] ^ (mt[i - 1] >> 30)) * factor); };
    const auto next = [&] {
      if (++i == N) mt[0] = mt[N - 1], i = 1;
    };
    for (int count = std::max(N, n), j = 0; count > 0; --count, next()) {
      mt[i] = mixed(1664525) + key[j] + j;
      if (++j == n) j = 0;
    }
    for (int count = N - 1; count > 0; --count, next()) mt[i] = mixed(1566083941) - i;
    mt[0] = 0x80000000;
  }

 private:
  // One step of the recursion at place k, for one word or four.
  template <class Word, class Sink>
  void put(int k, Word next, Word ahead, Sink& sink) const {
    Word x = ahead;
    const Word y = (load(k, x) & ~kLowerMask) | (next & kLowerMask);
    x ^= (y >> 1) ^ (-(next & 1) & matrix_a_);
    store(k, x);
    sink.put(tempered(x));
  }
  uint32_t load(int k, uint32_t) const { return mt_[k]; }
  Words4 load(int k, Words4) const { return load4(mt_ + k); }
  void store(int k, uint32_t x) const { mt_[k] = x; }
  void store(int k, Words4 x) const { store4(mt_ + k, x); }

  Words4 last3_first1() const { return __builtin_shufflevector(load4(mt_ + N - 4), load4(mt_), 1, 2, 3, 4); }

  uint32_t* mt_;
  uint32_t* index_;
  uint32_t matrix_a_, mask_b_, mask_c_;
};

// What generators on a twister share; theirs are State, with Mt and Index, engine(stream), and seed.
template <class Generator>
struct TwisterGenerator : NoLeapfrog, NoSkip {
  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
    draw(Generator::engine(stream), n, RealSink<Real>(r, a, b));
    return KOB_STATUS_OK;
  }
  static int words(KobStream* stream, int n, uint32_t* r) {
    draw(Generator::engine(stream), n, WordSink(r));
    return KOB_STATUS_OK;
  }
  static bool adopt(KobStream* stream) { return state<Generator>(stream).Index <= Generator::Engine::kWords; }
};

}  // namespace orx::brng
