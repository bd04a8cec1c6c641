#include "_service/single.hpp"
#include "hermite_cubspline1d/hermite_cubspline1d.hpp"
