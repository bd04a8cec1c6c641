#include "_service/single.h"
#include "akima_cubspline1d/akima_cubspline1d.inl"
