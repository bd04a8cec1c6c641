// acos x, double.
#include "asin/vdasin.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

template <class Method>
struct dAcosKernel : dArcKernel {
  template <class X>
  static auto rare(X x) {
    return not_at_most(magnitude(x), vdasin_data.one);
  }
  template <class X>
  static X eval(X x) {
    const auto& d = vdasin_data;
    // What is tiny does not show beside pi/2.
    const X size = max(magnitude(x), d.tiny);
    const Chord<X> chord(size);
    // From pi/2, or from 0 where x is large, from pi where -x is.
    const X sign = bit_and(x, broadcast_bits<X>(kSignBit<double>));
    const X quarters = d.one - keep(chord.steep, bit_or(sign, d.one));
    const X part = bit_xor(bit_xor(d.minus_half, keep(chord.steep, constant<X>(d.turned_and_doubled))), sign);
    return Method::sum(size, chord, quarters * d.quarter, quarters * d.quarter_lo, part);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    finish_outside(x, left);
  }
};
using dAcosHA = dAcosKernel<ArcHA>;
using dAcosLA = dAcosKernel<ArcLA>;
using dAcosEP = dAcosKernel<ArcEP>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Acos, G9HAynn, dAcosHA)
ORX_KERNEL(d, Acos, G9LAynn, dAcosLA)
ORX_KERNEL(d, Acos, G9EPnnn, dAcosEP)
