#include "_service/single.hpp"
#include "quadspline1d/quadspline1d.hpp"
