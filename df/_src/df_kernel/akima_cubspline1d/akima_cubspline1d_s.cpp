#include "_service/single.hpp"
#include "akima_cubspline1d/akima_cubspline1d.hpp"
