// To nearest, ties to even; inexact is raised where the result is not x.
#include "_rounding/rounding.hpp"

ORX_ROUNDING(Rint, orx::tef::kAsControlled)
