// MCG59: x(n+1) = a x(n) mod 2^59, a = 13^13.
//   On periods modulo a power of 2: D. E. Knuth, The Art of Computer Programming, vol. 2, 3.2.1.2.
#include "_math/modular.hpp"
#include "_service/generator.hpp"
#include "_service/reals.hpp"

#include <cstddef>

namespace {

using namespace orx::brng;

struct MCG59 {
  struct State {
    uint64_t X, Multiplier;
  };

  static int seed(KobStream* stream, int n, const uint32_t* params) {
    constexpr uint32_t high_bits = uint32_t(kMask59 >> 32);
    const uint64_t low = n < 1 ? 0 : params[0], high = n < 2 ? 0 : params[1] & high_bits;
    const uint64_t x = low | high << 32;
    state<MCG59>(stream) = {x ? x : 1, 0x113769B23C5FD};
    return KOB_STATUS_OK;
  }

  static int leapfrog(KobStream* stream, int n, const uint32_t* params) {
    State& s = state<MCG59>(stream);
    s.X = s.X * power(s.Multiplier, params[0]) & kMask59;
    s.Multiplier = power(s.Multiplier, uint32_t(n));
    return KOB_STATUS_OK;
  }

  static int skip(KobStream* stream, int, const uint32_t* params) {
    State& s = state<MCG59>(stream);
    s.X = s.X * power(s.Multiplier, word64(params)) & kMask59;
    return KOB_STATUS_OK;
  }

  static constexpr double kUnit = 0x1p-59;
  static int number(KobStream* stream, double* number) {
    State& s = state<MCG59>(stream);
    *number = to_double(s.X);
    s.X = s.X * s.Multiplier & kMask59;
    return KOB_STATUS_OK;
  }
  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
    const RealSink<Real> sink(r, a, (double(b) - double(a)) * kUnit);
    generate(state<MCG59>(stream), n, Convert<Real>{sink});
    return KOB_STATUS_OK;
  }

  static int words(KobStream* stream, int n, uint32_t* r) {
    generate(state<MCG59>(stream), n, Words{r});
    return KOB_STATUS_OK;
  }

  // Even states are legal, 0 is not; powers of the multiplier are odd.
  static bool adopt(KobStream* stream) {
    const State& s = state<MCG59>(stream);
    return s.X > 0 && s.X <= kMask59 && s.Multiplier <= kMask59 && s.Multiplier % 2 == 1;
  }

 private:
  static uint64_t power(uint64_t a, uint64_t n) {
    return __kobiPowMod2P59(uint32_t(a), uint32_t(a >> 32), uint32_t(n), uint32_t(n >> 32));
  }

  static double to_double(uint64_t x) { return int32_t(x >> 32) * 0x1p32 + word_to_double(uint32_t(x)); }

  struct Words {
    uint32_t* r;
    void operator()(int i, __m128i first, __m128i second) const {
      store4(r + 2 * ptrdiff_t(i), first);
      store4(r + 2 * ptrdiff_t(i) + 4, second);
    }
    void operator()(int i, uint64_t x) const {
      r[2 * ptrdiff_t(i)] = uint32_t(x);
      r[2 * ptrdiff_t(i) + 1] = uint32_t(x >> 32);
    }
  };

  // The halves of a word become doubles exactly, by standing in the low bits of 2^52 and of 2^84; their sum
  // is the only rounding.
  template <class Real>
  struct Convert {
    RealSink<Real> sink;
    void operator()(int i, __m128i first, __m128i second) const {
      const __m256d x = _mm256_castsi256_pd(pair(first, second));
      const __m256d low = _mm256_castps_pd(
          _mm256_blend_ps(_mm256_castpd_ps(x), _mm256_castpd_ps(_mm256_set1_pd(0x1p52)), 0xAA));
      const __m256d high =
          _mm256_or_pd(_mm256_castsi256_pd(pair(_mm_srli_epi64(first, 32), _mm_srli_epi64(second, 32))),
                       _mm256_set1_pd(0x1p84));
      sink(i, high - _mm256_set1_pd(0x1p84 + 0x1p52) + low);
    }
    void operator()(int i, uint64_t x) const { sink(i, to_double(x)); }

    static __m256i pair(__m128i first, __m128i second) {
      return _mm256_insertf128_si256(_mm256_castsi128_si256(first), second, 1);
    }
  };

  // Two words times a common multiplier mod 2^59. The product of the high halves lies beyond.
  static __m128i step2(__m128i x, uint64_t a) {
    const __m128i low = _mm_set1_epi64x(int64_t(a)), high = _mm_set1_epi64x(int64_t(a >> 32));
    const __m128i cross = _mm_add_epi64(_mm_mul_epu32(_mm_srli_epi64(x, 32), low), _mm_mul_epu32(x, high));
    const __m128i product = _mm_add_epi64(_mm_mul_epu32(x, low), _mm_slli_epi64(cross, 32));
    return _mm_and_si128(product, _mm_set1_epi64x(int64_t(kMask59)));
  }

  template <class Sink>
  static void generate(State& s, int n, Sink sink) {
    constexpr int at_once = 8;
    int i = 0;
    if (n >= at_once) {
      uint64_t jump = s.Multiplier;
      __m128i x[at_once / 2] = {_mm_set_epi64x(int64_t(s.X * jump & kMask59), int64_t(s.X))};
      for (int made = 1; made < at_once / 2; made *= 2) {
        jump = jump * jump & kMask59;
        for (int j = 0; j < made; ++j) x[made + j] = step2(x[j], jump);
      }
      jump = jump * jump & kMask59;
      for (; i <= n - at_once; i += at_once)
        for (int j = 0; j < at_once / 2; j += 2) {
          sink(i + 2 * j, x[j], x[j + 1]);
          x[j] = step2(x[j], jump);
          x[j + 1] = step2(x[j + 1], jump);
        }
      int j = 0;
      for (; i + 4 <= n; i += 4, j += 2) sink(i, x[j], x[j + 1]);
      _mm_storel_epi64(reinterpret_cast<__m128i*>(&s.X), x[j]);
    }
    for (; i < n; ++i) {
      sink(i, s.X);
      s.X = s.X * s.Multiplier & kMask59;
    }
  }
};

}  // namespace

ORX_BRNG_FUNCTIONS(MCG59)
