// x^(-1/3), single, for processors without AVX.
#include "invcbrt/invcbrt.hpp"

using namespace orx::tef;
ORX_KERNEL(s, InvCbrt, W7LAynn, sThirdLA<InvCbrtPower>)
ORX_KERNEL(s, InvCbrt, W7EPnnn, sThirdEP<InvCbrtPower>)
