// The normal distribution, double.
#include "cdfnorm/vdcdfnorm.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dCdfNormHA = Complement<CdfNormDescription, Accuracy::kHA>;
using dCdfNormLA = Complement<CdfNormDescription, Accuracy::kLA>;
using dCdfNormEP = Complement<CdfNormDescription, Accuracy::kEP>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, CdfNorm, G9HAynn, dCdfNormHA)
ORX_KERNEL(d, CdfNorm, G9LAynn, dCdfNormLA)
ORX_KERNEL(d, CdfNorm, G9EPnnn, dCdfNormEP)
