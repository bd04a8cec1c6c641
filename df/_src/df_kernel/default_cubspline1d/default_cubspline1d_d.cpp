#include "_service/double.hpp"
#include "default_cubspline1d/default_cubspline1d.hpp"
