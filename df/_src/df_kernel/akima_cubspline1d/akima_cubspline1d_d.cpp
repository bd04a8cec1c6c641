#include "_service/double.h"
#include "akima_cubspline1d/akima_cubspline1d.inl"
