// The angle of the point (x, y), single.
#include "atan/vsatan.hpp"
#include "atan2/atan2.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sAtan2HA = ArcTangent2<float, sAngleHA>;
using sAtan2LA = ArcTangent2<float, sAngleLA>;
using sAtan2EP = ArcTangent2<float, sAngleEP>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(binary, s, Atan2, G9HAynn, sAtan2HA)
ORX_KERNEL_OF(binary, s, Atan2, G9LAynn, sAtan2LA)
ORX_KERNEL_OF(binary, s, Atan2, G9EPnnn, sAtan2EP)
