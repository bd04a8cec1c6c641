// x^(1/3), single.
#include "cbrt/cbrt.hpp"

using namespace orx::tef;
ORX_KERNEL(s, Cbrt, G9HAynn, sThirdHA<CbrtPower>)
