// The angle of the point (x, y), double.
#include "atan/vdatan.hpp"
#include "atan2/atan2.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dAtan2HA = ArcTangent2<double, dAngleHA>;
using dAtan2LA = ArcTangent2<double, dAngleLA>;
using dAtan2EP = ArcTangent2<double, dAngleEP>;
}  // namespace
ORX_ISA_END

ORX_KERNELS(binary, d, Atan2)
