// atan x, double: the angle of the point (1, |x|).
#include "atan/vdatan.hpp"

namespace orx::tef {
alignas(64) const double kAngleTable[4 * 17][2] = {
#include "atan/vdatan.inc"
};
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)
namespace {

template <class Method>
struct dAtanKernel : Kernel<double(double)> {
  template <class X>
  static auto rare(X x) {
    return outside(magnitude(x), kTiny, kHuge);
  }
  template <class X>
  static X eval(X x) {
    const X size = magnitude(x), one = constant<X>(kOne);
    const Octant<X> octant(less(one, size));
    return with_sign_of(Method::angle(min(size, one), max(size, one), octant), x);
  }
  // Where x is tiny, x itself; where it is huge, pi/2.
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const X size = magnitude(x);
    left.finish(less(size, kTiny), [&](X tiny) { return exact_result(keep(tiny, x)); });
    left.finish(unordered(x, x), [&](X nan) { return keep(nan, x) + x; });
    left.finish(left.lanes, with_sign_of(constant<X>(kQuarter), x));
  }

 private:
  static constexpr Row<double> kTiny = 0x1p-120, kHuge = 0x1p+60, kOne = 1.0, kQuarter = 0x1.921fb54442d18p+0;
};
using dAtanHA = dAtanKernel<AngleHA>;
using dAtanLA = dAtanKernel<AngleLA>;
using dAtanEP = dAtanKernel<AngleEP>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Atan, G9HAynn, dAtanHA)
ORX_KERNEL(d, Atan, G9LAynn, dAtanLA)
ORX_KERNEL(d, Atan, G9EPnnn, dAtanEP)
