// atanh x, single, EP, for processors without AVX.
#include "atanh/vsatanh.hpp"

using namespace orx::tef;
ORX_KERNEL(s, Atanh, W7EPnnn, sAtanhEP)
