#include "_service/double.h"
#include "hermite_cubspline1d/hermite_cubspline1d.inl"
