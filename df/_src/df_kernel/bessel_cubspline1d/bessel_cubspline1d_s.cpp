#include "_service/single.hpp"
#include "bessel_cubspline1d/bessel_cubspline1d.hpp"
