// tan x, single.
#include "tan/vstan.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sTanLA = sTanRational<false>;
using sTanEP = sTanRational<true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Tan, G9LAynn, sTanLA)
ORX_KERNEL(s, Tan, G9EPnnn, sTanEP)
