// asinh x, single, HA, for processors without AVX.
#include "asinh/vsasinh.hpp"

using namespace orx::tef;
ORX_KERNEL(s, Asinh, T7HAynn, sAsinhHA)
