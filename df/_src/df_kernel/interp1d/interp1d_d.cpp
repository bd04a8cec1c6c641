#include "_service/double.hpp"
#include "interp1d/interp1d.hpp"
