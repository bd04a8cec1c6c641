// tanh z.
#include "_complex/waves_of_doubles.hpp"

using cTanh = orx::tef::cOfWaves<orx::tef::TanhOfWaves, orx::tef::Turned::kNot, orx_tef_kernel_ctanh_scalar>;
using zTanh = orx::tef::zOfWaves<orx::tef::TanhInTwo, orx::tef::Turned::kNot, orx_tef_kernel_ctanh_scalar>;
ORX_KERNEL(c, Tanh, PXHAynn, cTanh)
ORX_KERNEL(z, Tanh, PXHAynn, zTanh)
