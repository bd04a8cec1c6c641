#include "_service/double.hpp"
#include "slopes1d/slopes1d.hpp"
