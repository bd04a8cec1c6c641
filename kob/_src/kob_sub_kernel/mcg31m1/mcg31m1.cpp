// MCG31M1: x(n+1) = a x(n) mod 2^31 - 1, a = 1132489760.
//   P. L'Ecuyer, Tables of linear congruential generators of different sizes and good lattice structure,
//   Math. Comp. 68 (1999).
#include "_math/modular.hpp"
#include "_service/generator.hpp"
#include "_service/reals.hpp"

namespace {

using namespace orx::brng;

struct MCG31M1 {
  struct State {
    uint32_t X, Multiplier;
  };

  static int seed(KobStream* stream, int n, const uint32_t* params) {
    const uint32_t x = n < 1 ? 1 : params[0] % k2p31m1;
    state<MCG31M1>(stream) = {x ? x : 1, 1132489760};
    return KOB_STATUS_OK;
  }

  static int leapfrog(KobStream* stream, int n, const uint32_t* params) {
    State& s = state<MCG31M1>(stream);
    s.X = multiply_2p31m1(s.X, __kobiPowMod2P31M1(s.Multiplier, params[0], 0));
    s.Multiplier = __kobiPowMod2P31M1(s.Multiplier, uint32_t(n), 0);
    return KOB_STATUS_OK;
  }

  static int skip(KobStream* stream, int, const uint32_t* params) {
    State& s = state<MCG31M1>(stream);
    s.X = multiply_2p31m1(s.X, __kobiPowMod2P31M1(s.Multiplier, params[0], params[1]));
    return KOB_STATUS_OK;
  }

  static constexpr double kUnit = 0x1.00000002p-31;  // 1 / (2^31 - 1)
  static int number(KobStream* stream, double* number) {
    State& s = state<MCG31M1>(stream);
    *number = int32_t(s.X);
    s.X = multiply_2p31m1(s.X, s.Multiplier);
    return KOB_STATUS_OK;
  }
  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
    const RealSink<Real> sink(r, a, (double(b) - double(a)) * kUnit);
    generate(state<MCG31M1>(stream), n, Convert<Real>{sink});
    return KOB_STATUS_OK;
  }

  static int words(KobStream* stream, int n, uint32_t* r) {
    generate(state<MCG31M1>(stream), n, Word32Sink<uint32_t>(r));
    return KOB_STATUS_OK;
  }

  // Units modulo 2^31 - 1 alone lead to units.
  static bool adopt(KobStream* stream) {
    const State& s = state<MCG31M1>(stream);
    return s.X > 0 && s.X < k2p31m1 && s.Multiplier > 0 && s.Multiplier < k2p31m1;
  }

 private:
  // Words are below 2^31, so the signed conversion serves.
  template <class Real>
  struct Convert {
    RealSink<Real> sink;
    void operator()(int i, Words4 x) const { sink(i, simd::to_doubles(Ints4(x))); }
    void operator()(int i, uint32_t x) const { sink(i, double(int32_t(x))); }
  };

  // Four words times a common multiplier, given doubled: of each product the high word is then its bits from
  // 31 up and the low word, halved, the bits below. Their sum is x y mod 2^31 - 1 up to one subtraction.
  static Words4 step4(Words4 x, Words4 doubled) {
    const Wide2 even = simd::multiply_wide(Wide2(x), Wide2(doubled));
    const Wide2 odd = simd::multiply_wide(Wide2(x) >> 32, Wide2(doubled));
    const Words4 high = simd::alternate(Words4(even >> 32), Words4(odd));
    const Words4 low = simd::alternate(Words4(even), Words4(odd << 32)) >> 1;
    const Words4 sum = high + low;
    return simd::min(sum, sum - uint32_t(k2p31m1));
  }

  template <class Sink>
  static void generate(State& s, int n, Sink sink) {
    constexpr int at_once = 16;
    int i = 0;
    if (n >= at_once) {
      uint32_t first[4] = {s.X}, jump = s.Multiplier;
      for (int j = 1; j < 4; ++j) first[j] = multiply_2p31m1(first[j - 1], jump);
      const auto square = [&jump] { return jump = multiply_2p31m1(jump, jump); };
      square();
      Words4 x[at_once / 4] = {load4(first)};
      for (int made = 1; made < at_once / 4; made *= 2) {
        const Words4 ahead = 2 * square() + Words4{};
        for (int j = 0; j < made; ++j) x[made + j] = step4(x[j], ahead);
      }
      const Words4 ahead = 2 * square() + Words4{};
      for (; i <= n - at_once; i += at_once)
        for (int j = 0; j < at_once / 4; ++j) {
          sink(i + 4 * j, x[j]);
          x[j] = step4(x[j], ahead);
        }
      int j = 0;
      for (; i <= n - 4; i += 4) sink(i, x[j++]);
      s.X = x[j][0];
    }
    for (; i < n; ++i) {
      sink(i, s.X);
      s.X = multiply_2p31m1(s.X, s.Multiplier);
    }
  }
};

}  // namespace

ORX_BRNG_FUNCTIONS(MCG31M1)
