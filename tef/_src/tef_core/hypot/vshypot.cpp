// (x^2 + y^2)^(1/2), single.
#include "hypot/vshypot.hpp"

using namespace orx::tef;
ORX_KERNEL_OF(binary, s, Hypot, G9HAynn, sHypotHA)
ORX_KERNEL_OF(binary, s, Hypot, G9LAynn, sHypotLA)
ORX_KERNEL_OF(binary, s, Hypot, G9EPnnn, sHypotLA)
