#include "_service/double.h"
#include "simple_search1d/simple_search1d.inl"
