// sin x and cos x, single.
#include "sin/vssincos.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sSinCosHA = vssin_ha<Wanted::Both>;
using sSinCosLA = vssin_low<Wanted::Both, false>;
using sSinCosEP = vssin_low<Wanted::Both, true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(two_results, s, SinCos, G9HAynn, sSinCosHA)
ORX_KERNEL_OF(two_results, s, SinCos, G9LAynn, sSinCosLA)
ORX_KERNEL_OF(two_results, s, SinCos, G9EPnnn, sSinCosEP)
