// cos x, single.
#include "sin/vssincos.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sCosHA = vssin_ha<Wanted::Cosine>;
using sCosLA = vssin_low<Wanted::Cosine, false>;
using sCosEP = vssin_low<Wanted::Cosine, true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Cos, G9HAynn, sCosHA)
ORX_KERNEL(s, Cos, G9LAynn, sCosLA)
ORX_KERNEL(s, Cos, G9EPnnn, sCosEP)
