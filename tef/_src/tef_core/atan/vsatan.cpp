// atan x, single.
#include "atan/vsatan.hpp"
#include "atan/atan.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sAtanHA = ArcTangent<float, sAngleHA>;
using sAtanLA = ArcTangent<float, sAngleLA>;
using sAtanEP = ArcTangent<float, sAngleEP>;
}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, s, Atan)
