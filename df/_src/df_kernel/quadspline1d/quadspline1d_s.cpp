#include "_service/single.h"
#include "quadspline1d/quadspline1d.inl"
