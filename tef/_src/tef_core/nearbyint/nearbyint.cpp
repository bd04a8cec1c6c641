// To nearest, ties to even, as Rint, but inexact is never raised.
#include "_rounding/rounding.hpp"

ORX_ROUNDING(NearbyInt, orx::tef::kQuietly | orx::tef::kAsControlled)
