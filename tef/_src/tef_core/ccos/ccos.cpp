// cos z.
#include "_complex/waves_of_doubles.hpp"

using cCos = orx::tef::cOfWaves<orx::tef::CoshOfWaves, orx::tef::Turned::kEven, orx_tef_kernel_ccos_scalar>;
using zCos = orx::tef::zOfWaves<orx::tef::CoshInTwo, orx::tef::Turned::kEven, orx_tef_kernel_ccos_scalar>;
ORX_KERNEL(c, Cos, PXHAynn, cCos)
ORX_KERNEL(z, Cos, PXHAynn, zCos)
