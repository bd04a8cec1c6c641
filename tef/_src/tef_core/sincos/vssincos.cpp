// sin x and cos x, single.
#include "sin/vssincos.hpp"

ORX_SINES(two_results, s, SinCos, Both)
