// arsinh z.
#include "_complex/arcs.hpp"

ORX_ARCS(Asinh, casinh)
