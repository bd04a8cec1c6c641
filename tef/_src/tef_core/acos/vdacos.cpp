// acos x, double.
#include "asin/arc.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dAcosHA = ArcCosine<double, ArcHA>;
using dAcosLA = ArcCosine<double, ArcLA>;
using dAcosEP = ArcCosine<double, ArcEP>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Acos, G9HAynn, dAcosHA)
ORX_KERNEL(d, Acos, G9LAynn, dAcosLA)
ORX_KERNEL(d, Acos, G9EPnnn, dAcosEP)
