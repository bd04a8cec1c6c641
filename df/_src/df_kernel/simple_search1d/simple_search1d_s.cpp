#include "_service/single.hpp"
#include "simple_search1d/simple_search1d.hpp"
