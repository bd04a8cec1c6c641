// a^b.
#include "cpow/cpow.hpp"

using cPow = orx::tef::cPowOf<orx::tef::Complex<float>>;
using zPow = orx::tef::ComplexOfTwo<double, orx_tef_kernel_cpow_scalar>;
ORX_KERNEL_OF(binary, c, Pow, PXHAynn, cPow)
ORX_KERNEL_OF(binary, z, Pow, PXHAynn, zPow)
