#include "_service/single.h"
#include "linspline1d/linspline1d.inl"
