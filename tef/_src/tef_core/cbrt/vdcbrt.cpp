// x^(1/3), double.
#include "cbrt/cbrt.hpp"

using namespace orx::tef;
ORX_KERNEL(d, Cbrt, G9HAynn, dThirdHA<CbrtPower>)
ORX_KERNEL(d, Cbrt, G9LAynn, dThirdLA<CbrtPower>)
ORX_KERNEL(d, Cbrt, G9EPnnn, dThirdEP<CbrtPower>)
