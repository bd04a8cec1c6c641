// atan x, double.
#include "atan/vdatan.hpp"
#include "atan/atan.hpp"
#include "frame/classes.hpp"

namespace orx::tef {
alignas(64) const double kAngleTable[4 * 17][2] = {
#include "atan/vdatan.inc"
};
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)
namespace {
using dAtanHA = ArcTangent<double, dAngleHA>;
using dAtanLA = ArcTangent<double, dAngleLA>;
using dAtanEP = ArcTangent<double, dAngleEP>;
}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, d, Atan)
