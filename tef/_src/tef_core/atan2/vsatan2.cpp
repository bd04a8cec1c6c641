// The angle of the point (x, y), single.
#include "atan/vsatan.hpp"
#include "atan2/atan2.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sAtan2HA = ArcTangent2<float, sAngleHA>;
using sAtan2LA = ArcTangent2<float, sAngleLA>;
using sAtan2EP = ArcTangent2<float, sAngleEP>;
}  // namespace
ORX_ISA_END

ORX_KERNELS(binary, s, Atan2)
