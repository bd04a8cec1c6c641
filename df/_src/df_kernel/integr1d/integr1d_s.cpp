#include "_service/single.h"
#include "integr1d/integr1d.inl"
