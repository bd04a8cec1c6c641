#include "_service/double.hpp"
#include "linspline1d/linspline1d.hpp"
