#include "_service/double.h"
#include "bessel_cubspline1d/bessel_cubspline1d.inl"
