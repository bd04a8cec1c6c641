// The inverse of the complementary error function, single: in double, by the rows of EP.
#include "erfinv/inverse_erf.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

template <Control control>
struct sErfcInv : InverseOfProbability<float, 1> {
  static constexpr Control kControl = control;

  template <class X>
  static X eval(X x) {
    return narrow(erfcinv_by_rows<InverseErfEP>(kErfInvEpTable, widen(x)));
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(in_tail(x), [&](X tail) {
      return narrow(inverse_erf_tail<1>(dErfcInv_HA_Table, widen(tail_argument(x, tail))));
    });
  }
  static int rare_lane(const float* a, float* r) { return no_result(*a, 1.0f, r); }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, ErfcInv, G9HAynn, sErfcInv<Control::kUntouched>)
ORX_KERNEL(s, ErfcInv, G9LAynn, sErfcInv<Control::kMode>)
ORX_KERNEL(s, ErfcInv, G9EPnnn, sErfcInv<Control::kMode>)
