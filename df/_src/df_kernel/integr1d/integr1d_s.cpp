#include "_service/single.hpp"
#include "integr1d/integr1d.hpp"
