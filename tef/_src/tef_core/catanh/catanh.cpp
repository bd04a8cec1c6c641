// artanh z.
#include "_complex/arcs.hpp"

ORX_ARCS(Atanh, catanh)
