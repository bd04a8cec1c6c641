// x^(-1/3), single.
#include "invcbrt/invcbrt.hpp"

using namespace orx::tef;
ORX_KERNEL(s, InvCbrt, G9HAynn, sThirdHA<InvCbrtPower>)
