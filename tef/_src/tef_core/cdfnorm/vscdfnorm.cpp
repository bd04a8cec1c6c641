// The normal distribution, single.
#include "cdfnorm/vdcdfnorm.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sCdfNorm = SingleComplement<CdfNormDescription>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, CdfNorm, G9HAynn, sCdfNorm)
ORX_KERNEL(s, CdfNorm, G9LAynn, sCdfNorm)
ORX_KERNEL(s, CdfNorm, G9EPnnn, sCdfNorm)
