// x^(-1/3), double.
#include "invcbrt/invcbrt.hpp"

using namespace orx::tef;
ORX_KERNEL(d, InvCbrt, G9HAynn, dThirdHA<InvCbrtPower>)
ORX_KERNEL(d, InvCbrt, G9LAynn, dThirdLA<InvCbrtPower>)
ORX_KERNEL(d, InvCbrt, G9EPnnn, dThirdEP<InvCbrtPower>)
