#include "_service/single.h"
#include "search1d/search1d.inl"
