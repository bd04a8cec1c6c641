#include "_service/double.hpp"
#include "akima_cubspline1d/akima_cubspline1d.hpp"
