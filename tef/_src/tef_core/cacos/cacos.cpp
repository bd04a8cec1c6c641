// arccos z.
#include "_complex/arcs.hpp"

ORX_ARCS(Acos, cacos)
