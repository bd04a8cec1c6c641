// arcosh z, element by element.
#include "_complex/elementwise.hpp"

ORX_COMPLEX_ELEMENTWISE(Acosh, complex_acosh)
