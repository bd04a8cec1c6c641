// The angle of the point (x, y), double.
#include "atan/vdatan.hpp"
#include "atan2/atan2.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dAtan2HA = ArcTangent2<double, dAngleHA>;
using dAtan2LA = ArcTangent2<double, dAngleLA>;
using dAtan2EP = ArcTangent2<double, dAngleEP>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(binary, d, Atan2, G9HAynn, dAtan2HA)
ORX_KERNEL_OF(binary, d, Atan2, G9LAynn, dAtan2LA)
ORX_KERNEL_OF(binary, d, Atan2, G9EPnnn, dAtan2EP)
