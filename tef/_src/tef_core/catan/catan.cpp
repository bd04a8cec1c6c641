// arctan z.
#include "_complex/arcs.hpp"

ORX_ARCS(Atan, catan)
