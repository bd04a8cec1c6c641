// R250: x(n) = x(n-147) xor x(n-250), the sequence x(n) = x(n-103) xor x(n-250) run backwards.
//   S. Kirkpatrick, E. Stoll, A very fast shift-register sequence random number generator,
//   J. Comput. Phys. 40 (1981).
#include <algorithm>

#include "_service/generator.hpp"
#include "_service/reals.hpp"

namespace {

using namespace orx::brng;

constexpr uint32_t kLength = 250, kPartner = 103;

struct R250 : NoLeapfrog, NoSkip {
  struct State {
    uint32_t X[kLength];
    uint32_t I;  // the word to be replaced, x(n-250)
    uint32_t J;  // its partner, x(n-147)
  };

  static int seed(KobStream* stream, int n, const uint32_t* params) {
    State& s = state<R250>(stream);
    if (n >= int(kLength))
      std::copy_n(params, kLength, s.X);
    else
      fill(s.X, n > 0 && params[0] ? params[0] : 1);
    s.I = 0;
    s.J = kPartner;
    return KOB_STATUS_OK;
  }

  static constexpr double kUnit = 0x1p-32;
  static int number(KobStream* stream, double* number) {
    State& s = state<R250>(stream);
    *number = word_to_double(s.X[s.I] ^= s.X[s.J]);
    s.I = s.I + 1 == kLength ? 0 : s.I + 1;
    s.J = s.J + 1 == kLength ? 0 : s.J + 1;
    return KOB_STATUS_OK;
  }
  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
    return with_sink(r, a, b, [&](const auto& sink) {
      generate(state<R250>(stream), n, sink);
      return KOB_STATUS_OK;
    });
  }

  // Once the register has been handed out its words can be read where they stand, and it is filled anew at the end.
  static int words(KobStream* stream, int n, uint32_t* r) {
    State& s = state<R250>(stream);
    const bool many = n >= 2 * int(kLength);
    generate(s, many ? int(kLength) : n, Word32Sink<uint32_t>(r));
    if (many) extend(s, n, r);
    return KOB_STATUS_OK;
  }

  static bool adopt(KobStream* stream) {
    const State& s = state<R250>(stream);
    return s.I < kLength && s.J == (s.I + kPartner) % kLength;
  }

 private:
  // A multiplicative sequence; one word in seven then gets its leading one at a place of its own, so that the
  // register's 32 bit columns are linearly independent.
  static void fill(uint32_t* x, uint32_t s) {
    for (uint32_t i = 0; i < kLength; ++i) x[i] = s *= 69069;
    for (uint32_t j = 0; j < 32; ++j) {
      uint32_t& word = x[3 + 7 * j];
      word = (word & (0xFFFFFFFFu >> j)) | 0x80000000u >> j;
    }
  }

  // The words from kLength to n, and the register after them.
  static void extend(State& s, int n, uint32_t* r) {
    constexpr int length = kLength, lag = length - kPartner;
    int i = length;
    for (; i + 8 <= n; i += 8)
      simd::store(r + i, simd::native::bit_xor(simd::load<Doubles>(r + i - length),
                                               simd::load<Doubles>(r + i - lag)));
    for (; i < n; ++i) r[i] = r[i - length] ^ r[i - lag];
    s.I = (s.I + uint32_t(n) % kLength) % kLength;
    s.J = (s.I + kPartner) % kLength;
    std::rotate_copy(r + n - length, r + n - s.I, r + n, s.X);
  }

  // The register is stepped in place, in stretches in which neither index wraps. The partner is 103 words
  // ahead, not yet replaced, or 147 behind, just replaced: far enough for any vector.
  template <class Sink>
  static void generate(State& s, int n, Sink sink) {
    for (int done = 0; done < n;) {
      const int length = int(std::min({uint32_t(n - done), kLength - s.I, kLength - s.J}));
      uint32_t *x = s.X + s.I, *y = s.X + s.J;
      int i = 0;
      for (; i + 4 <= length; i += 4) {
        const Words4 w = load4(x + i) ^ load4(y + i);
        store4(x + i, w);
        sink(done + i, w);
      }
      for (; i < length; ++i) sink(done + i, x[i] ^= y[i]);
      done += length;
      s.I = (s.I + uint32_t(length)) % kLength;
      s.J = (s.J + uint32_t(length)) % kLength;
    }
  }
};

}  // namespace

ORX_BRNG_FUNCTIONS(R250)
