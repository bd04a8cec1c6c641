// a^b.
#include "cpow/cpow.hpp"

using cPow = orx::tef::cPowOf<orx::tef::Complex<float>>;
using zPow = orx::tef::zPowOf<orx::tef::Complex<double>>;
ORX_KERNEL_OF(binary, c, Pow, PXHAynn, cPow)
ORX_KERNEL_OF(binary, z, Pow, PXHAynn, zPow)
