// The inverse error function, single: in double, by the rows of EP.
#include "erfinv/inverse_erf.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct sErfInv : Kernel<float(float)> {
  template <class X>
  static auto rare(X x) {
    return outside(magnitude(x), kTiny, kBelowOne);
  }
  template <class X>
  static X eval(X x) {
    return narrow(erfinv_by_rows<InverseErfEP>(kErfInvEpTable, widen(x)));
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(less(magnitude(x), kTiny), [&](X tiny) {
      const auto wide = widen(bit_and(tiny, x));
      return narrow(wide * broadcast<decltype(wide + wide)>(0x1.c5bf891b4ef6bp-1));  // sqrt(pi)/2
    });
  }
  static int rare_lane(const float* a, float* r) { return erfinv_cout_rare(*a, r); }

 private:
  static constexpr Row<float> kTiny = 0x1p-100f, kBelowOne = 0x1.fffffep-1f;
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, ErfInv, G9HAynn, sErfInv)
ORX_KERNEL(s, ErfInv, G9LAynn, sErfInv)
ORX_KERNEL(s, ErfInv, G9EPnnn, sErfInv)
