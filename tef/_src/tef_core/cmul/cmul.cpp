// a b.
#include "_complex/product.hpp"

ORX_PRODUCTS(Mul, mul, Times)
