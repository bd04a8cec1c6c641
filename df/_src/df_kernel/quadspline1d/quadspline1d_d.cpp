#include "_service/double.hpp"
#include "quadspline1d/quadspline1d.hpp"
