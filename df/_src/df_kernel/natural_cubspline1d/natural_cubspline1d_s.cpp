#include "_service/single.h"
#include "natural_cubspline1d/natural_cubspline1d.inl"
