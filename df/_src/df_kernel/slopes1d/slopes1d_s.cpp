#include "_service/single.hpp"
#include "slopes1d/slopes1d.hpp"
