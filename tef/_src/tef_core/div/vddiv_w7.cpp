// a/b, double, for processors without AVX.
#include "div/quotient.hpp"

using namespace orx::tef;
ORX_KERNEL_OF(binary, d, Div, W7HAynn, Div<double>)
