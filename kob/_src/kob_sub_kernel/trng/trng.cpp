// The processor's random generator, by the instruction RDRAND.
#include <immintrin.h>

#include "_service/generator.hpp"
#include "_service/reals.hpp"

namespace {

using namespace orx::brng;

constexpr uint32_t kRetries = 10;

struct State {
  uint32_t Reserved;
  uint32_t RetryLimit;
};

// Two words by two instructions, both of which must succeed.
__attribute__((target("rdrnd"))) bool draw(uint32_t retries, uint32_t w[2]) {
  for (uint32_t tries = 0;; ++tries) {
    unsigned low, high;
    const int first = _rdrand32_step(&low), second = _rdrand32_step(&high);
    if (first & second) {
      w[0] = low;
      w[1] = high;
      return true;
    }
    if (tries == retries) return false;
  }
}

// n numbers, so many of them from each draw: put(i, first word, second word).
template <int numbers_per_draw, class Put>
int draws(const State& s, int n, const Put& put) {
  uint32_t w[2];
  for (int64_t i = 0; i < n; i += numbers_per_draw) {
    if (!draw(s.RetryLimit, w)) return KOB_ERROR_TRNG_FAILED;
    put(int(i), w[0], w[1]);
  }
  return KOB_STATUS_OK;
}

// Numbers of one word each: the second of the last draw is dropped when n is odd.
template <class Put>
int one_word_each(const State& s, int n, const Put& put) {
  return draws<2>(s, n, [&](int i, uint32_t first, uint32_t second) {
    put(i, first);
    if (i + 1 < n) put(i + 1, second);
  });
}

struct TRNG : NoLeapfrog, NoSkip, ByBlocks, NothingToCheck {
  using State = ::State;

  static int seed(KobStream* stream, int n, const uint32_t* params) {
    state<TRNG>(stream) = {0, n > 1 && params[1] ? params[1] : kRetries};
    return KOB_STATUS_OK;
  }

  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b);
  static int words(KobStream* stream, int n, uint32_t* r);
};

}  // namespace

extern "C" {

// The word of a double has 64 bits; product and sum are those of extended precision, rounded at the end.
int _vdTRNGRdRand(KobStream* stream, int n, double* r, double a, double b) {
  return draws<1>(state<TRNG>(stream), n, [&](int i, uint32_t low, uint32_t high) {
    const uint64_t word = low | uint64_t(high) << 32;
    const long double w = static_cast<long double>(int64_t(word)) + (word >> 63 ? 0x1p64L : 0);
    r[i] = double(a + (static_cast<long double>(b) - a) * 5.421010862427522e-20 * w);
  });
}

int _vsTRNGRdRand(KobStream* stream, int n, float* r, float a, float b) {
  const float scale = (b - a) * 2.3283064e-10f;
  return one_word_each(state<TRNG>(stream), n, [&](int i, uint32_t w) {
    const float u = float(int32_t(w)) + (w >> 31 ? 0x1p32f : 0);
    r[i] = a + u * scale;
  });
}

int _viTRNGRdRand(KobStream* stream, int n, uint32_t* r) {
  return one_word_each(state<TRNG>(stream), n, [&](int i, uint32_t w) { r[i] = w; });
}

}  // extern "C"

namespace {

template <class Real>
int TRNG::reals(KobStream* stream, int n, Real* r, Real a, Real b) {
  if (!__kobCPUisRDRAND()) return KOB_ERROR_TRNG_UNSUPPORTED;
  if constexpr (sizeof(Real) == 8)
    return _vdTRNGRdRand(stream, n, r, a, b);
  else
    return _vsTRNGRdRand(stream, n, r, a, b);
}

int TRNG::words(KobStream* stream, int n, uint32_t* r) {
  return __kobCPUisRDRAND() ? _viTRNGRdRand(stream, n, r) : KOB_ERROR_TRNG_UNSUPPORTED;
}

}  // namespace

ORX_BRNG_FUNCTIONS(TRNG)
