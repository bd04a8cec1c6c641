#include "_service/double.h"
#include "search1d/search1d.inl"
