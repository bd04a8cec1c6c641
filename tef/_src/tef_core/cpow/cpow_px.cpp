// a^b, element by element.
#include "_complex/elementwise.hpp"

using cPow = orx::tef::ComplexOfTwo<float, orx::tef::complex_pow_of_singles>;
using zPow = orx::tef::ComplexOfTwo<double, orx::tef::complex_pow>;
ORX_KERNEL_OF(binary, c, Pow, PXHAynn, cPow)
ORX_KERNEL_OF(binary, z, Pow, PXHAynn, zPow)
