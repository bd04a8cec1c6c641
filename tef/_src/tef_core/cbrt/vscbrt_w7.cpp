// x^(1/3), single, for processors without AVX.
#include "cbrt/cbrt.hpp"

using namespace orx::tef;
ORX_KERNEL(s, Cbrt, W7LAynn, sThirdLA<CbrtPower>)
ORX_KERNEL(s, Cbrt, W7EPnnn, sThirdEP<CbrtPower>)
