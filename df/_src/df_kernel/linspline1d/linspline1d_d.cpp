#include "_service/double.h"
#include "linspline1d/linspline1d.inl"
