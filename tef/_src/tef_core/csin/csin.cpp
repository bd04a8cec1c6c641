// sin z.
#include "_complex/waves_of_doubles.hpp"

using cSin = orx::tef::cOfWaves<orx::tef::SinhOfWaves, orx::tef::Turned::kOdd, orx_tef_kernel_csin_scalar>;
using zSin = orx::tef::zOfWaves<orx::tef::SinhInTwo, orx::tef::Turned::kOdd, orx_tef_kernel_csin_scalar>;
ORX_KERNEL(c, Sin, PXHAynn, cSin)
ORX_KERNEL(z, Sin, PXHAynn, zSin)
