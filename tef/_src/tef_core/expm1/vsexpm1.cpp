// e^x - 1, single.
#include "exp/vsexp.hpp"
#include "expm1/expm1.hpp"

ORX_ISA_BEGIN
namespace {

alignas(64) constexpr float powers_of_two_4[2][8] = {
#include "expm1/vsexpm1.inc"
};

struct vsexpm1_data_type {
  row<float> inv_L = 0x1.715476p+2f;     // 4/ln 2
  row<float> shifter = 0x1.8003f8p+23f;  // 1.5 * 2^23 + 4 * 127
  row<float> L_hi = 0x1.62ep-3f;         // ln 2/4; short, so that its product with an integer is exact
  row<float> L_lo = 0x1.0bfbe8p-17f;
  // (e^r - 1 - r) / r^2, |r| <= ln2/8, to 2^-35
  row<float> c[4] = {0x1.fffffep-2f, 0x1.555554p-3f, 0x1.557288p-5f, 0x1.1128ep-7f};
  row<float> minus_one = -1.0f;
  row<uint32_t> leading_bits = 0xFFFFF000;
};
struct vsexpm1_ep_data_type {
  row<float> inv_L = 0x1.715476p+2f;
  row<float> shifter = 0x1.8003f8p+23f;
  row<float> L = 0x1.62e43p-3f;
  // (e^r - 1 - r) / r^2, |r| <= ln2/8, to 2^-21
  row<float> c[2] = {0x1.0021e4p-1f, 0x1.557624p-3f};
  row<float> minus_one = -1.0f;
};

constexpr row<float> rare_from = 0x1.5d58ap+6f;

struct sExpm1 : kernel<float> {
  static constexpr int together = 2;
  static constexpr vsexpm1_data_type data{};
  static constexpr vsexpm1_ep_data_type ep_data{};
  static constexpr int b = 2, ep_b = 2;

  template <class X>
  static void powers(X N, X& high, X& rest) {
    high = select_of_4(powers_of_two_4[0], N);
    rest = select_of_4(powers_of_two_4[1], N);
  }
  template <class X>
  static X power(X N) {
    return select_of_4(rounded_powers, N);
  }
  template <class X>
  static X rare(X x) {
    return not_below(magnitude(x), rare_from);
  }
  static int rare_lane(const float* a, float* r) {
    if (!(*a < 0)) return vsexp_cout_rare(a, r);
    *r = -1.0f;
    return StatusOk;
  }

 private:
  alignas(32) static constexpr float rounded_powers[8] = {0x1p+0f,        0x1.306fep+0f, 0x1.6a09e6p+0f,
                                                          0x1.ae89fap+0f, 0x1p+0f,       0x1.306fep+0f,
                                                          0x1.6a09e6p+0f, 0x1.ae89fap+0f};
};

using sExpm1HA = expm1_ha<sExpm1>;
using sExpm1LA = expm1_la<sExpm1>;
using sExpm1EP = expm1_ep<sExpm1>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Expm1, G9HAynn, sExpm1HA, 0.61, -80, 80)
ORX_KERNEL(s, Expm1, G9LAynn, sExpm1LA, 2.0, -80, 80)
ORX_KERNEL(s, Expm1, G9EPnnn, sExpm1EP, 4096, -80, 80)
