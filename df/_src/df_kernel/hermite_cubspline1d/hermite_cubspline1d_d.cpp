#include "_service/double.hpp"
#include "hermite_cubspline1d/hermite_cubspline1d.hpp"
