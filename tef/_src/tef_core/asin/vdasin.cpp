// asin x, double.
#include "asin/vdasin.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

template <class Method>
struct dAsinKernel : dArcKernel {
  template <class X>
  static auto rare(X x) {
    return outside(magnitude(x), vdasin_data.tiny, vdasin_data.one);
  }
  template <class X>
  static X eval(X x) {
    const auto& d = vdasin_data;
    const X size = magnitude(x);
    const Chord<X> chord(size);
    const X base = keep(chord.steep, constant<X>(d.quarter)),
            base_lo = keep(chord.steep, constant<X>(d.quarter_lo));
    const X part = bit_xor(d.half, keep(chord.steep, constant<X>(d.turned_and_doubled)));
    return with_sign_of(Method::sum(size, chord, base, base_lo, part), x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(less(magnitude(x), vdasin_data.tiny), [&](X tiny) { return exact_result(keep(tiny, x)); });
    finish_outside(x, left);
  }
};
using dAsinHA = dAsinKernel<ArcHA>;
using dAsinLA = dAsinKernel<ArcLA>;
using dAsinEP = dAsinKernel<ArcEP>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Asin, G9HAynn, dAsinHA)
ORX_KERNEL(d, Asin, G9LAynn, dAsinLA)
ORX_KERNEL(d, Asin, G9EPnnn, dAsinEP)
