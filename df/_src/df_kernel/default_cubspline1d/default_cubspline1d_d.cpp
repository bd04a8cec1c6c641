#include "_service/double.h"
#include "default_cubspline1d/default_cubspline1d.inl"
