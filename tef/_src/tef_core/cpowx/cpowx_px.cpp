// a^b with one b for all, element by element.
#include "_complex/elementwise.hpp"

template <class T>
using Second = orx::tef::Scalar<orx::tef::Complex<T>>;
using cPowx = orx::tef::ComplexOfTwo<float, orx::tef::complex_pow_of_singles, Second<float>>;
using zPowx = orx::tef::ComplexOfTwo<double, orx::tef::complex_pow, Second<double>>;
ORX_KERNEL_OF(complex_scalar_second, c, Powx, PXHAynn, cPowx)
ORX_KERNEL_OF(complex_scalar_second, z, Powx, PXHAynn, zPowx)
