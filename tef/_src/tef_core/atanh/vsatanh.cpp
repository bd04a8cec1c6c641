// atanh x, single. EP stands in vsatanh_w7.cpp.
#include "atanh/vsatanh.hpp"

using namespace orx::tef;
ORX_KERNEL(s, Atanh, G9HAynn, sAtanhHA)
ORX_KERNEL(s, Atanh, G9LAynn, sAtanhLA)
