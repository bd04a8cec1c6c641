// a^b with one b for all.
#include "cpow/cpow.hpp"

template <class T>
using Second = orx::tef::Scalar<orx::tef::Complex<T>>;
using cPowx = orx::tef::cPowOf<Second<float>>;
using zPowx = orx::tef::zPowOf<Second<double>>;
ORX_KERNEL_OF(complex_scalar_second, c, Powx, PXHAynn, cPowx)
ORX_KERNEL_OF(complex_scalar_second, z, Powx, PXHAynn, zPowx)
