#include "_service/double.hpp"
#include "antideriv1d/antideriv1d.hpp"
