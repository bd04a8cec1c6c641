#include "_service/double.hpp"
#include "simple_search1d/simple_search1d.hpp"
