// arcosh z.
#include "_complex/arcs.hpp"

ORX_ARCS(Acosh, cacosh)
