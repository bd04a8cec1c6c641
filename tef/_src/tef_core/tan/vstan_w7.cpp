// tan x, single, for processors without AVX.
#include "tan/vstan.hpp"

using namespace orx::tef;
ORX_KERNEL(s, Tan, W7HAynn, sTanHA)
