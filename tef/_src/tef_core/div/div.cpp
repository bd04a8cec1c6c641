// a/b. See quotient.hpp.
#include "div/quotient.hpp"

using namespace orx::tef;
ORX_KERNEL_OF(binary, d, Div, G9LAynn, Div<double>)
ORX_KERNEL_OF(binary, s, Div, G9LAynn, Div<float>)
ORX_KERNEL_OF(binary, s, Div, G9EPnnn, QuietDiv<float>)
