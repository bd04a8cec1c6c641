// cos z, element by element.
#include "_complex/elementwise.hpp"

ORX_COMPLEX_ELEMENTWISE(Cos, complex_cos)
