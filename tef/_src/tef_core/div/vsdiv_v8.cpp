// a/b, single, for processors without AVX.
#include "div/quotient.hpp"

using namespace orx::tef;
ORX_KERNEL_OF(binary, s, Div, V8HAynn, Div<float>)
