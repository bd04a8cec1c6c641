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
    void operator()(int i, Wide2 first, Wide2 second) const {
      store4(r + 2 * ptrdiff_t(i), Words4(first));
      store4(r + 2 * ptrdiff_t(i) + 4, Words4(second));
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
    void operator()(int i, Wide2 first, Wide2 second) const {
      const Doubles x = simd::reals(first, second);
      const Doubles low = simd::lower_half_below(spread(0x1p52), x),
                    high = simd::upper_half_below(spread(0x1p84), x);
      sink(i, high - (0x1p84 + 0x1p52) + low);
    }
    void operator()(int i, uint64_t x) const { sink(i, to_double(x)); }
  };

  // A multiplier for two words at a time.
  struct Multiplier2 {
    Wide2 low, high;
    explicit Multiplier2(uint64_t a) : low(a + Wide2{}), high((a >> 32) + Wide2{}) {
      __asm__("" : "+m"(high));  // stays in memory: there are few registers
    }
  };
  // Two words times a common multiplier mod 2^59. The product of the high halves lies beyond.
  static Wide2 step2(Wide2 x, const Multiplier2& a) {
    const Wide2 cross = simd::multiply_wide(x >> 32, a.low) + simd::multiply_wide(x, a.high);
    return (simd::multiply_wide(x, a.low) + (cross << 32)) & kMask59;
  }

  template <class Sink>
  static void generate(State& s, int n, Sink sink) {
    constexpr int at_once = 8;
    int i = 0;
    if (n >= at_once) {
      uint64_t jump = s.Multiplier;
      Wide2 x[at_once / 2] = {{s.X, s.X * jump & kMask59}};
      for (int made = 1; made < at_once / 2; made *= 2) {
        jump = jump * jump & kMask59;
        for (int j = 0; j < made; ++j) x[made + j] = step2(x[j], Multiplier2(jump));
      }
      const Multiplier2 ahead(jump * jump & kMask59);
      for (; i <= n - at_once; i += at_once)
        for (int j = 0; j < at_once / 2; j += 2) {
          sink(i + 2 * j, x[j], x[j + 1]);
          x[j] = step2(x[j], ahead);
          x[j + 1] = step2(x[j + 1], ahead);
        }
      Wide2 next = x[0];
      if (i + at_once / 2 <= n) {
        sink(i, x[0], x[1]);
        next = x[2];
        i += at_once / 2;
      }
      s.X = next[0];
    }
    for (; i < n; ++i) {
      sink(i, s.X);
      s.X = s.X * s.Multiplier & kMask59;
    }
  }
};

}  // namespace

ORX_BRNG_FUNCTIONS(MCG59)
