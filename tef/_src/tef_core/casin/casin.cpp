// arcsin z.
#include "_complex/arcs.hpp"

ORX_ARCS(Asin, casin)
