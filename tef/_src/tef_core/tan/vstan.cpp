// tan x, single.
#include "tan/vstan.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sTanLA = sTanPolynomial<false>;
using sTanEP = sTanPolynomial<true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Tan, G9LAynn, sTanLA)
ORX_KERNEL(s, Tan, G9EPnnn, sTanEP)
