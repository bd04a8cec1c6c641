#include "_service/single.hpp"
#include "default_cubspline1d/default_cubspline1d.hpp"
