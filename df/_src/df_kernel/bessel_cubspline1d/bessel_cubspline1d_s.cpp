#include "_service/single.h"
#include "bessel_cubspline1d/bessel_cubspline1d.inl"
