// a^b with one b for all, element by element.
#include "_complex/elementwise.hpp"

template <class T>
using Powx = orx::tef::ComplexOfTwo<T, orx::tef::complex_pow, orx::tef::Scalar<orx::tef::Complex<T>>>;
ORX_KERNEL_OF(complex_scalar_second, c, Powx, PXHAynn, Powx<float>)
ORX_KERNEL_OF(complex_scalar_second, z, Powx, PXHAynn, Powx<double>)
