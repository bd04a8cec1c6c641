#include "frame/arithmetic.hpp"

ORX_ARITHMETIC(Mul, x* y)
