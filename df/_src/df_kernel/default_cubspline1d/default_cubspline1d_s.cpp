#include "_service/single.h"
#include "default_cubspline1d/default_cubspline1d.inl"
