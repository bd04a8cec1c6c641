#include "_service/double.hpp"
#include "search1d/search1d.hpp"
