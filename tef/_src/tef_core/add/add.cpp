#include "frame/arithmetic.hpp"

ORX_ARITHMETIC(Add, x + y)
