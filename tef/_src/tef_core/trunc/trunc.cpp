// Towards zero.
#include "_rounding/rounding.hpp"

ORX_ROUNDING(Trunc, orx::tef::kToZero)
