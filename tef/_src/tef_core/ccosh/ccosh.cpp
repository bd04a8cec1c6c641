// cosh z.
#include "_complex/waves_of_doubles.hpp"

using cCosh = orx::tef::cOfWaves<orx::tef::CoshOfWaves, orx::tef::Turned::kNot, orx_tef_kernel_ccosh_scalar>;
using zCosh = orx::tef::zOfWaves<orx::tef::CoshInTwo, orx::tef::Turned::kNot, orx_tef_kernel_ccosh_scalar>;
ORX_KERNEL(c, Cosh, PXHAynn, cCosh)
ORX_KERNEL(z, Cosh, PXHAynn, zCosh)
