// asin x, single.
#include "asin/arc.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sAsinHA = ArcSine<float, ArcHA>;
using sAsinLA = ArcSine<float, ArcLA>;
using sAsinEP = ArcSine<float, ArcEP>;
}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, s, Asin)
