// x^(3/2), single.
#include "pow3o2/pow3o2.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct InDoubles {
  template <class X>
  static X power(X x) {
    return narrow(RoundedTwice::power(widen(x)));
  }
};

using sPow3o2HA = Pow3o2<float, InDoubles>;
using sPow3o2LA = Pow3o2<float, RoundedTwice>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Pow3o2, G9HAynn, sPow3o2HA)
ORX_KERNEL(s, Pow3o2, G9LAynn, sPow3o2LA)
