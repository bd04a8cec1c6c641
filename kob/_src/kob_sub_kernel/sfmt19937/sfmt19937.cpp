// SFMT19937: M. Saito and M. Matsumoto, "SIMD-oriented Fast Mersenne Twister: a 128-bit pseudorandom number
// generator", Monte Carlo and Quasi-Monte Carlo Methods 2006, Springer (2008) 607-622.
#include <algorithm>

#include "_service/generator.hpp"
#include "_twister/word_blocks.hpp"

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
  void renew(int k, int end, const Sink& sink) const {
    uint32_t* const w = w_;
    Words4 c = load<Words4>(w + (k + kSize - 8) % kSize), d = load<Words4>(w + (k + kSize - 4) % kSize);
    const auto step = [&](int ahead) {
      const Words4 made = next(load<Words4>(w + k), load<Words4>(w + ahead), c, d);
      c = d;
      d = made;
      store(w + k, made);
      sink(k, made);
    };
    for (; k < std::min(end, kSize - kPos1); k += 4) step(k + kPos1);
    for (; k < end; k += 4) step(k + kPos1 - kSize);
  }

 private:
  // The word after d. The steps hang together through d alone, so all else must be added up before: the
  // compiler, which takes the sum in any order, is kept from it.
  static Words4 next(Words4 a, Words4 b, Words4 c, Words4 d) {
    constexpr Words4 mask = {0xDFFFFFEF, 0xDDFECB7F, 0xBFFAFFFF, 0xBFFFFFF6};
    Words4 sum = a ^ simd::shift_bytes_left<1>(a) ^ ((b >> 11) & mask);
    asm("" : "+x"(sum));
    sum ^= simd::shift_bytes_right<1>(c);
    asm("" : "+x"(sum));
    return sum ^ (d << 18);
  }

  uint32_t* w_;
  uint32_t* index_;
};

// The period is a multiple of 2^19937 - 1 unless the state is in a certain subspace: from there one bit leads
// out.
void certify_period(uint32_t* w) {
  constexpr uint32_t parity[4] = {1, 0, 0, 0x13C9E684};
  uint32_t inner = 0;
  for (int i = 0; i < 4; ++i) inner ^= w[i] & parity[i];
  if (__builtin_parity(inner) == 0) w[0] ^= 1;  // the lowest bit set in the parity words
}

void _InitStateVector(State& s, const uint32_t* key, int n) {
  constexpr int lag = 11, mid = (kSize - lag) / 2;
  std::fill(s.W, s.W + kSize, 0x8B8B8B8B);
  int i = 0;
  const auto at = [&](int ahead) -> uint32_t& {
    return s.W[i + ahead < kSize ? i + ahead : i + ahead - kSize];
  };
  const auto next = [&] {
    if (++i == kSize) i = 0;
  };

  const auto add = [&](uint32_t more) {
    uint32_t r = s.W[i] ^ at(mid) ^ at(kSize - 1);
    r = (r ^ (r >> 27)) * 1664525;
    at(mid) += r;
    r += more;
    at(mid + lag) += r;
    s.W[i] = r;
    next();
  };
  const int64_t count = std::max<int64_t>(int64_t(n) + 1, kSize);
  add(n);
  for (int64_t j = 1; j < count; ++j) add((j <= n ? key[j - 1] : 0) + i);

  for (int j = 0; j < kSize; ++j, next()) {
    uint32_t r = s.W[i] + at(mid) + at(kSize - 1);
    r = (r ^ (r >> 27)) * 1566083941;
    at(mid) ^= r;
    r -= i;
    at(mid + lag) ^= r;
    s.W[i] = r;
  }
  certify_period(s.W);
  s.Index = kSize;
  std::fill(s.Pending, s.Pending + 3, 0);  // an image shows them
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

  static Engine engine(KobStream* stream) { return Engine(state<SFMT19937>(stream)); }

  static constexpr double kUnit = 0x1p-32;
  static int number(KobStream* stream, double* number) {
    State& s = state<SFMT19937>(stream);
    if (s.PendingPos < s.PendingCount) {
      *number = word_to_double(s.Pending[s.PendingPos++]);
      return KOB_STATUS_OK;
    }
    if (s.Index == kSize) renew_all<SFMT19937>(stream);
    const uint32_t* group = s.W + s.Index;
    *number = word_to_double(group[0]);
    std::copy_n(group + 1, 3, s.Pending);
    s.Index += 4;
    s.PendingPos = 0;
    s.PendingCount = 3;
    return KOB_STATUS_OK;
  }

  // Reals take whole 128-bit words; what is left of the last one waits for the next call for reals.
  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
    return with_sink(r, a, b, [&](const auto& sink) { return generate(state<SFMT19937>(stream), n, sink); });
  }

  template <class Sink>
  static int generate(State& s, int n, const Sink& sink) {
    int done = 0;
    while (done < n && s.PendingPos < s.PendingCount) sink(done++, s.Pending[s.PendingPos++]);
    if (done >= n) return KOB_STATUS_OK;

    const int whole = (n - done) & ~3;
    draw(Engine(s), whole, sink, done);
    done += whole;
    s.PendingPos = s.PendingCount = 0;
    if (done == n) return KOB_STATUS_OK;
    uint32_t group[4];
    draw(Engine(s), 4, Word32Sink<uint32_t>(group));
    for (const uint32_t w : group)
      if (done < n)
        sink(done++, w);
      else
        s.Pending[s.PendingCount++] = w;
    return KOB_STATUS_OK;
  }

  // n 128-bit words, in parts that an int can count in 32-bit words. The waiting words are not looked at.
  static int words(KobStream* stream, int n, uint32_t* r) {
    constexpr int most = 1 << 26;
    for (; n > most; n -= most, r += 4 * most)
      draw(Engine(state<SFMT19937>(stream)), 4 * most, Word32Sink<uint32_t>(r));
    if (n > 0) draw(Engine(state<SFMT19937>(stream)), 4 * n, Word32Sink<uint32_t>(r));
    return KOB_STATUS_OK;
  }

  static bool adopt(KobStream* stream) {
    const State& s = state<SFMT19937>(stream);
    return s.Index <= kSize && s.Index % 4 == 0 && s.PendingPos <= s.PendingCount && s.PendingCount <= 3;
  }
};

}  // namespace

ORX_BRNG_FUNCTIONS(SFMT19937)
