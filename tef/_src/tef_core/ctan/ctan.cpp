// tan z.
#include "_complex/waves_of_doubles.hpp"

using cTan = orx::tef::cOfWaves<orx::tef::TanhOfWaves, orx::tef::Turned::kOdd, orx_tef_kernel_ctan_scalar>;
using zTan = orx::tef::zOfWaves<orx::tef::TanhInTwo, orx::tef::Turned::kOdd, orx_tef_kernel_ctan_scalar>;
ORX_KERNEL(c, Tan, PXHAynn, cTan)
ORX_KERNEL(z, Tan, PXHAynn, zTan)
