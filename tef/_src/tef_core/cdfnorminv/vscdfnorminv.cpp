// The inverse of the normal distribution, single: in double, by the rows of EP.
#include "erfinv/inverse_erf.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct sCdfNormInv : InverseOfProbability<float, 2> {
  template <class X>
  static X eval(X x) {
    return narrow(cdfnorminv_by_rows<InverseErfEP>(kCdfNormInvEpTable, widen(x)));
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(in_tail(x), [&](X tail) {
      return X{} - narrow(inverse_erf_tail<2>(kCdfNormInvTailTable, widen(tail_argument(x, tail))));
    });
  }
  static int rare_lane(const float* a, float* r) { return vscdfnorminv_cout_rare(a, r); }

 private:
  static int vscdfnorminv_cout_rare(const float* a, float* r) { return no_result(*a, -1.0f, r); }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, CdfNormInv, G9HAynn, sCdfNormInv)
ORX_KERNEL(s, CdfNormInv, G9LAynn, sCdfNormInv)
ORX_KERNEL(s, CdfNormInv, G9EPnnn, sCdfNormInv)
