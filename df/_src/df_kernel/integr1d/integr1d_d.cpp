#include "_service/double.hpp"
#include "integr1d/integr1d.hpp"
