// sin x and cos x, double.
#include "sin/vdsincos.hpp"

ORX_SINES(two_results, d, SinCos, Both)
