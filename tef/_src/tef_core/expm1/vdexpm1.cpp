// e^x - 1, double.
#include "exp/vdexp.hpp"
#include "expm1/expm1.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

alignas(64) constexpr double kPowersOfTwo256[256][2] = {
#include "expm1/vdexpm1.inc"
};

constexpr double kUp = 0x1p60;

struct dExpm1 : Expm1<dExpm1, double> {
  // 2^-500, below which squares underflow, and 707.7033
  static constexpr Row<double> kTiny = 0x1p-500, kRareFrom = 0x1.61da04cbafe44p+9;
  // L = ln 2/256; |r| <= ln2/512, to 2^-61.1 of e^r - 1
  static constexpr Expm1Constants<double, uint64_t> kData{
      0x1.71547652b82fep+8,
      0x1.800000003ffp+52,  // 1.5 * 2^52 + 256 * 1023
      0x1.62e42fef8p-9,
      0x1.1cf79abc9e3b4p-44,  // what it lacks of ln 2/256
      {0x1.fffffffffffe6p-2, 0x1.55555555554aep-3, 0x1.5555570981dd9p-5, 0x1.11111a377ebe8p-7},
      0xFFFFFFFFF8000000};
  // to 2^-35.1 of e^r - 1
  static constexpr Expm1EpConstants<double> kEpData{0x1.71547652b82fep+8 * kUp,
                                                    0x1.800000003ffp+52 * kUp,
                                                    0x1.62e42fefa39efp-9 / kUp,
                                                    {0x1.000001ec60ebcp-1, 0x1.55555e6b9eaefp-3}};

  template <class X>
  static void powers(X N, X& high, X& rest) {
    const SpilledWords<X> n(N);
    gather_pairs(
        kPowersOfTwo256[0], [&](int lane) { return n.low_byte(lane); }, high, rest);
  }
  template <class X>
  static void rounded_powers(X N, X& T, X& rest) {
    const SpilledWords<X> n(N);
    gather_pairs(
        _tefdExpHATab[0], [&](int lane) { return n.low_byte(lane); }, T, rest);
  }
  template <class X>
  static X power(X N) {
    const SpilledWords<X> n(N);
    return gather<X>(_tefdExpHATab[0], [&](int lane) { return 2 * n.low_byte(lane); });
  }
  template <class X>
  static X scale(X N) {
    return scale_from<8>(N);
  }
  template <class X, class Left>
  static void finish_large(X x, Left& left) {
    vdexp_finish_large(x, left);
  }
  static int rare_lane(const double* a, double* r) { return vdexp_cout_rare(a, r); }
};

using dExpm1HA = Expm1HA<dExpm1>;
using dExpm1LA = Expm1LA<dExpm1>;
using dExpm1EP = Expm1EP<dExpm1>;

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, d, Expm1)
