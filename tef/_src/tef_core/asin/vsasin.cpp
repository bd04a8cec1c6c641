// asin x, single.
#include "asin/arc.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sAsinHA = ArcSine<float, ArcHA>;
using sAsinLA = ArcSine<float, ArcLA>;
using sAsinEP = ArcSine<float, ArcEP>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Asin, G9HAynn, sAsinHA)
ORX_KERNEL(s, Asin, G9LAynn, sAsinLA)
ORX_KERNEL(s, Asin, G9EPnnn, sAsinEP)
