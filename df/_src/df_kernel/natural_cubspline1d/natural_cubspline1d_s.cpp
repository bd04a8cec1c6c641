#include "_service/single.hpp"
#include "natural_cubspline1d/natural_cubspline1d.hpp"
