// sinh x, double. HA stands in vdsinh_w7.cpp.
#include "sinh/vdsinh.hpp"

using namespace orx::tef;
ORX_KERNEL(d, Sinh, G9LAynn, dSinhLA)
