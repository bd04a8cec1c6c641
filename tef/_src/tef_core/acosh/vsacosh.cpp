// acosh x, single. HA stands in vsacosh_t7.cpp.
#include "acosh/vsacosh.hpp"

using namespace orx::tef;
ORX_KERNEL(s, Acosh, G9LAynn, sAcoshLA)
ORX_KERNEL(s, Acosh, G9EPnnn, sAcoshEP)
