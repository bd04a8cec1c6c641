#include "_service/double.h"
#include "quadspline1d/quadspline1d.inl"
