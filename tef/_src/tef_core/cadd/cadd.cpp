// a + b of complex numbers.
#include "_complex/sum.hpp"

ORX_SUMS(Add, Plus)
