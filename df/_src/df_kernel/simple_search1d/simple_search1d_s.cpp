#include "_service/single.h"
#include "simple_search1d/simple_search1d.inl"
