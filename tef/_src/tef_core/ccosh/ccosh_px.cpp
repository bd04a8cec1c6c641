// cosh z, element by element.
#include "_complex/elementwise.hpp"

ORX_COMPLEX_ELEMENTWISE(Cosh, complex_cosh)
