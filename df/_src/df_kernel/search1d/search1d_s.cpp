#include "_service/single.hpp"
#include "search1d/search1d.hpp"
