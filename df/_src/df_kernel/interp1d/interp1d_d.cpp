#include "_service/double.h"
#include "interp1d/interp1d.inl"
