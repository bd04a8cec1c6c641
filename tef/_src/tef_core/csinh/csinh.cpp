// sinh z.
#include "_complex/waves_of_doubles.hpp"

using cSinh = orx::tef::cOfWaves<orx::tef::SinhOfWaves, orx::tef::Turned::kNot, orx_tef_kernel_csinh_scalar>;
using zSinh = orx::tef::zOfWaves<orx::tef::SinhInTwo, orx::tef::Turned::kNot, orx_tef_kernel_csinh_scalar>;
ORX_KERNEL(c, Sinh, PXHAynn, cSinh)
ORX_KERNEL(z, Sinh, PXHAynn, zSinh)
