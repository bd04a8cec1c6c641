#include "_service/double.hpp"
#include "natural_cubspline1d/natural_cubspline1d.hpp"
