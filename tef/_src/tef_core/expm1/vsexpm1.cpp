// e^x - 1, single.
#include "exp/vsexp.hpp"
#include "expm1/expm1.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

alignas(64) constexpr float kPowersOfTwo4[2][8] = {
#include "expm1/vsexpm1.inc"
};

struct sExpm1Data {
  Row<float> inv_L = 0x1.715476p+2f;     // 4/ln 2
  Row<float> shifter = 0x1.8003f8p+23f;  // 1.5 * 2^23 + 4 * 127
  Row<float> L_hi = 0x1.62ep-3f;         // ln 2/4; short, so that its product with an integer is exact
  Row<float> L_lo = 0x1.0bfbe8p-17f;
  // (e^r - 1 - r) / r^2, |r| <= ln2/8, to 2^-30.7 of e^r - 1
  Row<float> c[4] = {0x1.fffffep-2f, 0x1.555556p-3f, 0x1.557278p-5f, 0x1.11164ap-7f};
  Row<float> minus_one = -1.0f;
  Row<float> lowest = -32.0f;  // the result is -1 from there down, and what makes it up would underflow
  Row<uint32_t> leading_bits = 0xFFFFF000;
};
struct sExpm1EpData {
  Row<float> inv_L = 0x1.715476p+2f;
  Row<float> shifter = 0x1.8003f8p+23f;
  Row<float> L = 0x1.62e43p-3f;
  // (e^r - 1 - r) / r^2, |r| <= ln2/8, to 2^-17.1 of e^r - 1
  Row<float> c[2] = {0x1.001ea6p-1f, 0x1.556374p-3f};
  Row<float> minus_one = -1.0f;
  Row<float> lowest = -32.0f;  // the result is -1 from there down, and what makes it up would underflow
};

constexpr Row<float> kTiny = 0x1p-26f, kRareFrom = 0x1.5d589ep+6f;

struct sExpm1 : Kernel<float(float)> {
  static constexpr int kTogether = 2;
  static constexpr sExpm1Data kData{};
  static constexpr sExpm1EpData kEpData{};
  static constexpr int kB = 2, kEpB = 2;

  template <class X>
  static void powers(X N, X& high, X& rest) {
    high = select_of_4(kPowersOfTwo4[0], N);
    rest = select_of_4(kPowersOfTwo4[1], N);
  }
  template <class X>
  static X power(X N) {
    return select_of_4(kRoundedPowers, N);
  }
  template <class X>
  static X rare(X x) {
    return outside(magnitude(x), kTiny, kRareFrom);
  }
  // Where x is tiny it is the result. Far below 0 the result is -1, and no underflow is told. The others are so
  // large that e^x - 1 is e^x.
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(less(magnitude(x), kTiny), [&](X tiny) { return exact_result(bit_and(tiny, x)); });
    left.finish(less(x, X{}), constant<X>(kData.minus_one));
    vsexp_finish_large(x, left);
  }
  static int rare_lane(const float* a, float* r) { return vsexp_cout_rare(a, r); }

 private:
  alignas(32) static constexpr float kRoundedPowers[8] = {0x1p+0f,        0x1.306fep+0f, 0x1.6a09e6p+0f,
                                                          0x1.ae89fap+0f, 0x1p+0f,       0x1.306fep+0f,
                                                          0x1.6a09e6p+0f, 0x1.ae89fap+0f};
};

using sExpm1HA = Expm1HA<sExpm1>;
using sExpm1LA = Expm1LA<sExpm1>;
using sExpm1EP = Expm1EP<sExpm1>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Expm1, G9HAynn, sExpm1HA)
ORX_KERNEL(s, Expm1, G9LAynn, sExpm1LA)
ORX_KERNEL(s, Expm1, G9EPnnn, sExpm1EP)
