// Up: the least integer that is not below x.
#include "_rounding/rounding.hpp"

ORX_ROUNDING(Ceil, orx::tef::kUp)
