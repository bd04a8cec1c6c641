// SFMT19937: M. Saito and M. Matsumoto, "SIMD-oriented Fast Mersenne Twister: a 128-bit pseudorandom number
// generator", Monte Carlo and Quasi-Monte Carlo Methods 2006, Springer (2008) 607-622.
#include <algorithm>

#include "kob_sub_kernel/_service/stream.hpp"
#include "kob_sub_kernel/mt19937/word_blocks.hpp"

namespace {

using namespace orx::brng;

constexpr int kSize = 624, kPos1 = 4 * 122;  // in 32-bit words

struct State {
  uint32_t W[kSize];  // 128-bit words, the lowest 32 bits first
  uint32_t Index;     // the next of W to hand out
  // Words that a call for reals took out of a 128-bit word and did not use.
  uint32_t Pending[3];
  uint32_t PendingPos;
  uint32_t PendingCount;
};

// The recursion as a source of words, without tempering.
class Engine {
 public:
  static constexpr int kWords = kSize;

  explicit Engine(State& s) : w_(s.W), index_(&s.Index) {}

  uint32_t* words() const { return w_; }
  uint32_t& index() const { return *index_; }

  template <class Word>
  Word tempered(Word w) const {
    return w;
  }

  template <class Sink>
  Sink renew(Sink sink) const {
    Words4 c = load4(w_ + kSize - 8), d = load4(w_ + kSize - 4);  // the two made last
    const auto make = [&](int k, int ahead) {
      const Words4 made = step(load4(w_ + k), load4(w_ + ahead), c, d);
      c = d;
      d = made;
      store4(w_ + k, made);
      sink.put(made);
    };
    for (int k = 0; k < kSize - kPos1; k += 4) make(k, k + kPos1);
    for (int k = kSize - kPos1; k < kSize; k += 4) make(k, k + kPos1 - kSize);
    return sink;
  }

 private:
  static Words4 step(Words4 a, Words4 b, Words4 c, Words4 d) {
    constexpr Words4 mask = {0xDFFFFFEF, 0xDDFECB7F, 0xBFFAFFFF, 0xBFFFFFF6};
    // What does not hang on the step before comes first.
    const Words4 early = a ^ Words4(_mm_slli_si128(__m128i(a), 1)) ^ ((b >> 11) & mask);
    return (early ^ Words4(_mm_srli_si128(__m128i(c), 1))) ^ (d << 18);
  }

  uint32_t* w_;
  uint32_t* index_;
};

// The period is a multiple of 2^19937 - 1 unless the state is in a certain subspace: from there one bit leads out.
void certify_period(uint32_t* w) {
  constexpr uint32_t parity[4] = {1, 0, 0, 0x13C9E684};
  uint32_t inner = 0;
  for (int i = 0; i < 4; ++i) inner ^= w[i] & parity[i];
  if (__builtin_parity(inner) == 0) w[0] ^= 1;  // the lowest bit set in the parity words
}

void _InitStateVector(State& s, const uint32_t* key, int n) {
  constexpr int kLag = 11, kMid = (kSize - kLag) / 2;
  std::fill(s.W, s.W + kSize, 0x8B8B8B8B);
  int i = 0;
  const auto at = [&](int ahead) -> uint32_t& { return s.W[i + ahead < kSize ? i + ahead : i + ahead - kSize]; };
  const auto next = [&] {
    if (++i == kSize) i = 0;
  };

  const auto add = [&](uint32_t more) {
    uint32_t r = s.W[i] ^ at(kMid) ^ at(kSize - 1);
    r = (r ^ (r >> 27)) * 1664525;
    at(kMid) += r;
    r += more;
    at(kMid + kLag) += r;
    s.W[i] = r;
    next();
  };
  const int64_t count = std::max<int64_t>(int64_t(n) + 1, kSize);
  add(n);
  for (int64_t j = 1; j < count; ++j) add((j <= n ? key[j - 1] : 0) + i);

  for (int j = 0; j < kSize; ++j, next()) {
    uint32_t r = s.W[i] + at(kMid) + at(kSize - 1);
    r = (r ^ (r >> 27)) * 1566083941;
    at(kMid) ^= r;
    r -= i;
    at(kMid + kLag) ^= r;
    s.W[i] = r;
  }
  certify_period(s.W);
  s.Index = kSize;
  s.PendingPos = s.PendingCount = 0;
}

void _InitStateVector(State& s, uint32_t key) { _InitStateVector(s, &key, 1); }

struct SFMT19937 : NoLeapfrog, NoSkip {
  using State = ::State;

  static int seed(KobStream* stream, int n, const uint32_t* params) {
    State& s = state<SFMT19937>(stream);
    if (n < 1)
      _InitStateVector(s, 1);
    else
      _InitStateVector(s, params, n);
    return KOB_STATUS_OK;
  }

  // Reals take whole 128-bit words; what is left of the last one waits for the next call for reals.
  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
    if (n <= 0) return KOB_STATUS_OK;
    State& s = state<SFMT19937>(stream);
    const int waiting = std::min<int>(n, s.PendingCount - s.PendingPos);
    RealSink<Real> sink(r, a, b);
    for (int i = 0; i < waiting; ++i) sink.put(s.Pending[s.PendingPos++]);
    n -= waiting;
    if (n == 0) return KOB_STATUS_OK;

    const int whole = n & ~3, rest = n & 3;
    sink = draw(Engine(s), whole, sink);
    s.PendingPos = s.PendingCount = 0;
    if (rest == 0) return KOB_STATUS_OK;
    uint32_t group[4];
    draw(Engine(s), 4, WordSink(group));
    for (int i = 0; i < 4; ++i) {
      if (i < rest)
        sink.put(group[i]);
      else
        s.Pending[s.PendingCount++] = group[i];
    }
    return KOB_STATUS_OK;
  }

  // n 128-bit words. The waiting words are not looked at.
  static int words(KobStream* stream, int n, uint32_t* r) {
    draw(Engine(state<SFMT19937>(stream)), 4 * ptrdiff_t(n), WordSink(r));
    return KOB_STATUS_OK;
  }

  static bool adopt(KobStream* stream) {
    const State& s = state<SFMT19937>(stream);
    return s.Index <= kSize && s.Index % 4 == 0 && s.PendingPos <= s.PendingCount && s.PendingCount <= 3;
  }
};

}  // namespace

ORX_BRNG_FUNCTIONS(SFMT19937)
