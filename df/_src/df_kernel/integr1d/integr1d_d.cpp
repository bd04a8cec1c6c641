#include "_service/double.h"
#include "integr1d/integr1d.inl"
