// The house's vocabulary of vectors, as vector mathematics uses it: unqualified.
#pragma once
#include "orx/base/simd/simd.hpp"

namespace orx::tef {
using namespace orx::simd;
}
