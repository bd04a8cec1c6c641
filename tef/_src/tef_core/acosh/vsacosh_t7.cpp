// acosh x, single, HA, for processors without AVX.
#include "acosh/vsacosh.hpp"

using namespace orx::tef;
ORX_KERNEL(s, Acosh, T7HAynn, sAcoshHA)
