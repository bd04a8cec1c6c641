// The Mersenne twister of M. Matsumoto and T. Nishimura, ACM Trans. Model. Comput. Simul. 8 (1998) 3-30:
// x(k+N) = x(k+M) ^ (y >> 1) ^ (y odd ? A : 0), where y has the upper bits of x(k) and the lower bits of
// x(k+1).
#pragma once

#include <algorithm>

#include "_service/generator.hpp"
#include "_twister/word_blocks.hpp"

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

  // Replaces words by those N later, in place, from k to end. The words at k + M are ahead of k at first and
  // behind it, where they are new already, from N - M on; one group of four stands astride.
  template <class Sink>
  void renew(int k, int end, const Sink& sink) const {
    uint32_t* const mt = mt_;
    const auto step = [&](auto next, auto ahead) {  // one word, or four
      using Word = decltype(next);
      const Word now = load<Word>(mt + k);
      const Word made = ahead ^ ((now ^ ((now ^ next) & kLowerMask)) >> 1) ^ if_odd(next, matrix_a_);
      store(mt + k, made);
      sink(k, tempered(made));
    };
    const auto four = [&](int i) { return load<Words4>(mt + i); };
    const auto last3_first1 = [&] { return __builtin_shufflevector(four(N - 4), four(0), 1, 2, 3, 4); };

    constexpr int astride = (N - M) & ~3, last = (N - 1) & ~3;
    static_assert(N - M - astride == 3 && N % 4 <= 1);
    for (; k < std::min(end, astride); k += 4) step(four(k + 1), four(k + M));
    if (k == astride && k < end) step(four(k + 1), last3_first1()), k += 4;
    for (; k < std::min(end, last); k += 4) step(four(k + 1), four(k + M - N));
    if (k >= end) return;
    if constexpr (N % 4 == 0)
      step(last3_first1(), four(k + M - N));
    else
      step(mt[0], mt[k + M - N]);
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
  static uint32_t if_odd(uint32_t x, uint32_t value) { return x & 1 ? value : 0; }
  static Words4 if_odd(Words4 x, uint32_t value) {
    // A look-up by the two lowest bits: one instruction for a mask and an AND.
    const Words4 choice = {0, value, 0, value};
    return simd::select_of_4(choice, x);
  }

  uint32_t* mt_;
  uint32_t* index_;
  uint32_t matrix_a_, mask_b_, mask_c_;
};

// What generators on a twister share; theirs are State, with Mt and Index, engine(stream), and seed.
template <class Generator>
struct TwisterGenerator : NoLeapfrog, NoSkip {
  static constexpr double kUnit = 0x1p-32;
  static int number(KobStream* stream, double* number) {
    *number = word_to_double(next_word(stream));
    return KOB_STATUS_OK;
  }
  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
    return with_sink(r, a, b, [&](const auto& sink) {
      draw(Generator::engine(stream), n, sink);
      return KOB_STATUS_OK;
    });
  }
  static int words(KobStream* stream, int n, uint32_t* r) {
    if (n == 1)
      *r = next_word(stream);
    else
      draw(Generator::engine(stream), n, Word32Sink<uint32_t>(r));
    return KOB_STATUS_OK;
  }
  static uint32_t next_word(KobStream* stream) {
    if (Generator::engine(stream).index() == Generator::Engine::kWords) renew_all<Generator>(stream);
    const auto engine = Generator::engine(stream);
    return engine.tempered(engine.words()[engine.index()++]);
  }
  static bool adopt(KobStream* stream) { return state<Generator>(stream).Index <= Generator::Engine::kWords; }
};

}  // namespace orx::brng
