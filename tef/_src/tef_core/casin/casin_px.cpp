// arcsin z, element by element.
#include "_complex/elementwise.hpp"

ORX_COMPLEX_ELEMENTWISE(Asin, complex_asin)
