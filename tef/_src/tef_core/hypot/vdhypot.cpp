// (x^2 + y^2)^(1/2), double.
#include "hypot/vdhypot.hpp"

using namespace orx::tef;
ORX_KERNEL_OF(binary, d, Hypot, G9HAynn, dHypotHA)
ORX_KERNEL_OF(binary, d, Hypot, G9LAynn, dHypotLA)
ORX_KERNEL_OF(binary, d, Hypot, G9EPnnn, dHypotLA)
