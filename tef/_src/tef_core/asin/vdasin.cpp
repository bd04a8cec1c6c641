// asin x, double.
#include "asin/arc.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dAsinHA = ArcSine<double, ArcHA>;
using dAsinLA = ArcSine<double, ArcLA>;
using dAsinEP = ArcSine<double, ArcEP>;
}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, d, Asin)
