// asinh x, single, LA and EP, for processors without AVX.
#include "asinh/vsasinh.hpp"

using namespace orx::tef;
ORX_KERNEL(s, Asinh, W7LAynn, sAsinhLA)
ORX_KERNEL(s, Asinh, W7EPnnn, sAsinhEP)
