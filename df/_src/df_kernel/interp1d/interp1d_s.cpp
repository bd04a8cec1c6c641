#include "_service/single.hpp"
#include "interp1d/interp1d.hpp"
