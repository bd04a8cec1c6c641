// e^x - 1, single.
#include "exp/vsexp.hpp"
#include "expm1/expm1.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

alignas(64) constexpr float kPowersOfTwo4[4][8] = {
#include "expm1/vsexpm1.inc"
};

// The unit of n, to a whole: so n with the exponent's bias is the bits of a scale factor.
constexpr float kQuarters = 0x1p21f;

struct sExpm1 : Expm1<sExpm1, float> {
  static constexpr Row<float> kTiny = 0x1p-60f, kRareFrom = 0x1.5d58ap+6f;
  static constexpr int kTogether = 2;
  // L = ln 2/4; |r| <= ln2/8, to 2^-30.7 of e^r - 1
  static constexpr Expm1Constants<float, uint32_t> kData{
      0x1.715476p+2f * kQuarters,
      0x1.8p+23f * kQuarters,
      0x1.62ep-3f / kQuarters,
      0x1.0bfbe8p-17f / kQuarters,  // what it lacks of ln 2/4
      {0x1.fffffep-2f, 0x1.555556p-3f, 0x1.557278p-5f, 0x1.11164ap-7f},
      0xFFFFF000};
  // the same L; to 2^-17.1 of e^r - 1
  static constexpr Expm1EpConstants<float> kEpData{0x1.715476p+2f * kQuarters,
                                                   0x1.8p+23f * kQuarters,
                                                   0x1.62e43p-3f / kQuarters,
                                                   {0x1.001ea6p-1f, 0x1.556374p-3f}};

  template <class X>
  static void powers(X N, X& high, X& rest) {
    high = select_of_4(kPowersOfTwo4[0], N);
    rest = select_of_4(kPowersOfTwo4[1], N);
  }
  template <class X>
  static void rounded_powers(X N, X& T, X& rest) {
    T = power(N);
    rest = select_of_4(kPowersOfTwo4[3], N);
  }
  template <class X>
  static X power(X N) {
    return select_of_4(kPowersOfTwo4[2], N);
  }
  template <class X>
  static X scale(X N) {
    return bit_and(real_of_bits(N - kBiased), kExponent);
  }
  template <class X, class Left>
  static void finish_large(X x, Left& left) {
    vsexp_finish_large(x, left);
  }
  static int rare_lane(const float* a, float* r) { return vsexp_cout_rare(a, r); }

 private:
  static constexpr Row<float> kBiased = (0x1.8p+23f - 4 * 127) * kQuarters;
  static constexpr Row<uint32_t> kExponent = 0x7F800000;
};

using sExpm1HA = Expm1HA<sExpm1>;
using sExpm1LA = Expm1LA<sExpm1>;
using sExpm1EP = Expm1EP<sExpm1>;

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, s, Expm1)
