#include "_service/double.h"
#include "natural_cubspline1d/natural_cubspline1d.inl"
