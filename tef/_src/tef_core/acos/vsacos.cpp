// acos x, single.
#include "asin/arc.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sAcosHA = ArcCosine<float, ArcHA>;
using sAcosLA = ArcCosine<float, ArcLA>;
using sAcosEP = ArcCosine<float, ArcEP>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Acos, G9HAynn, sAcosHA)
ORX_KERNEL(s, Acos, G9LAynn, sAcosLA)
ORX_KERNEL(s, Acos, G9EPnnn, sAcosEP)
