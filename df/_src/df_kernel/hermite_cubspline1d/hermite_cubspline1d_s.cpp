#include "_service/single.h"
#include "hermite_cubspline1d/hermite_cubspline1d.inl"
