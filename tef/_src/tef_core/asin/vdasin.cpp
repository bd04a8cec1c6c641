// asin x, double.
#include "asin/arc.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dAsinHA = ArcSine<double, ArcHA>;
using dAsinLA = ArcSine<double, ArcLA>;
using dAsinEP = ArcSine<double, ArcEP>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Asin, G9HAynn, dAsinHA)
ORX_KERNEL(d, Asin, G9LAynn, dAsinLA)
ORX_KERNEL(d, Asin, G9EPnnn, dAsinEP)
