#include "_service/double.hpp"
#include "bessel_cubspline1d/bessel_cubspline1d.hpp"
