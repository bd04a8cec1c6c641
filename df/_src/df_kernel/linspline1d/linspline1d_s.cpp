#include "_service/single.hpp"
#include "linspline1d/linspline1d.hpp"
