// e^x - 1, double.
#include "exp/vdexp.hpp"
#include "expm1/expm1.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

alignas(64) constexpr double kPowersOfTwo128[128][2] = {
#include "expm1/vdexpm1.inc"
};

// |x| is rare below 2^-500, where it is the result and its square underflows, and from 707.7033 on.
constexpr Row<double> kTiny = 0x1p-500, kRareFrom = 0x1.61da04cbafe44p+9;

struct dExpm1 : Kernel<double(double)> {
  // L = ln 2/128; |r| <= ln2/256, to 2^-56.1 of e^r - 1
  static constexpr int kB = 7;
  static constexpr Expm1Constants<double, uint64_t> kData{
      0x1.71547652b82fep+7,
      0x1.800000001ff8p+52,  // 1.5 * 2^52 + 128 * 1023
      0x1.62e42fef8p-8,
      0x1.1cf79abc9e3b4p-43,  // what it lacks of ln 2/128
      {0x1.ffffffffffe5bp-2, 0x1.5555555555089p-3, 0x1.55555c2c4428ep-5, 0x1.111123a5f3c09p-7},
      0xFFFFFFFFF8000000};
  // L = ln 2/64; |r| <= ln2/128, to 2^-29.1 of e^r - 1
  static constexpr int kEpB = 6;
  static constexpr Expm1EpConstants<double> kEpData{0x1.71547652b82fep+6,
                                                    0x1.800000000ffcp+52,  // 1.5 * 2^52 + 64 * 1023
                                                    0x1.62e42fefap-7,
                                                    {0x1.00001ec73e274p-1, 0x1.555582ea2f691p-3}};

  template <class X>
  static void powers(X N, X& high, X& rest) {
    const SpilledWords<X> n(N);
    gather_pairs(
        kPowersOfTwo128[0], [&](int lane) { return n.low(lane) & 127; }, high, rest);
  }
  template <class X>
  static X power(X N) {
    const SpilledWords<X> n(N);
    return gather<X>(_tefdExpHATab[0], [&](int lane) { return 2 * (n.low(lane) & 63); });
  }
  template <class X>
  static X rare(X x) {
    const X size = magnitude(x);
    return bit_or(not_below(size, kRareFrom), less(size, kTiny));
  }
  // Where x is tiny it is the result. Far below 0 the result is -1, and no underflow is told. The others are so
  // large that e^x - 1 is e^x.
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(less(magnitude(x), kTiny), [&](X tiny) { return exact_result(bit_and(tiny, x)); });
    left.finish(less(x, X{}), constant<X>(kData.minus_one));
    vdexp_finish_large(x, left);
  }
  static int rare_lane(const double* a, double* r) { return vdexp_cout_rare(a, r); }
};

using dExpm1HA = Expm1HA<dExpm1>;
using dExpm1LA = Expm1LA<dExpm1>;
using dExpm1EP = Expm1EP<dExpm1>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Expm1, G9HAynn, dExpm1HA)
ORX_KERNEL(d, Expm1, G9LAynn, dExpm1LA)
ORX_KERNEL(d, Expm1, G9EPnnn, dExpm1EP)
