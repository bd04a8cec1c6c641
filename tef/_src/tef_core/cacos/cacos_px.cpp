// arccos z, element by element.
#include "_complex/elementwise.hpp"

ORX_COMPLEX_ELEMENTWISE(Acos, complex_acos)
