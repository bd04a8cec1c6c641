#include "_service/single.hpp"
#include "antideriv1d/antideriv1d.hpp"
