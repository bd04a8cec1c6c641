// atan x, single.
#include "atan/vsatan.hpp"
#include "atan/atan.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sAtanHA = ArcTangent<float, sAngleHA>;
using sAtanLA = ArcTangent<float, sAngleLA>;
using sAtanEP = ArcTangent<float, sAngleEP>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Atan, G9HAynn, sAtanHA)
ORX_KERNEL(s, Atan, G9LAynn, sAtanLA)
ORX_KERNEL(s, Atan, G9EPnnn, sAtanEP)
