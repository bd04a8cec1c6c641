// erf x, single: in double, where the shortest series gives more than a single holds.
#include "erf/vderf.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct sErf : Kernel<float(float)> {
  static constexpr int kTogether = 2;

  template <class X>
  static auto rare(X x) {
    return unordered(x, x);
  }
  template <class X>
  static X eval(X x) {
    return narrow(dErfLow<true>::eval(widen(x)));
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(unordered(x, x), x + x);
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Erf, G9HAynn, sErf)
ORX_KERNEL(s, Erf, G9LAynn, sErf)
ORX_KERNEL(s, Erf, G9EPnnn, sErf)
