// acos x, single.
#include "asin/arc.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sAcosHA = ArcCosine<float, ArcHA>;
using sAcosLA = ArcCosine<float, ArcLA>;
using sAcosEP = ArcCosine<float, ArcEP>;
}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, s, Acos)
