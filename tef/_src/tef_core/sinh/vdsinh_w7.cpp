// sinh x, double, HA, for processors without AVX.
#include "sinh/vdsinh.hpp"

using namespace orx::tef;
ORX_KERNEL(d, Sinh, W7HAynn, dSinhHA)
