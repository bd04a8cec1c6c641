// Down: the greatest integer that is not above x.
#include "_rounding/rounding.hpp"

ORX_ROUNDING(Floor, orx::tef::kDown)
