#include "_service/single.h"
#include "interp1d/interp1d.inl"
