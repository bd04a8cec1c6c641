// cos x, double.
#include "sin/vdsincos.hpp"

ORX_SINES(unary, d, Cos, Cosine)
