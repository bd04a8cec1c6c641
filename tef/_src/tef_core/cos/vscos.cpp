// cos x, single.
#include "sin/vssincos.hpp"

ORX_SINES(unary, s, Cos, Cosine)
