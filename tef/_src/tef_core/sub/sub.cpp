#include "frame/arithmetic.hpp"

ORX_ARITHMETIC(Sub, x - y)
