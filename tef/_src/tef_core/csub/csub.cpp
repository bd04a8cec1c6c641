// a - b of complex numbers.
#include "_complex/sum.hpp"

ORX_SUMS(Sub, Minus)
