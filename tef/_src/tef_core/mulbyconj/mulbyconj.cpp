// a times the conjugate of b.
#include "_complex/product.hpp"

ORX_PRODUCTS(MulByConj, mulbyconj, TimesConjugate)
