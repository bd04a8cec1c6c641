// sin x and cos x, double.
#include "sin/vdsincos.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dSinCosHA = vdsin_ha<Wanted::Both>;
using dSinCosLA = vdsin_low<Wanted::Both, false>;
using dSinCosEP = vdsin_low<Wanted::Both, true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(two_results, d, SinCos, G9HAynn, dSinCosHA)
ORX_KERNEL_OF(two_results, d, SinCos, G9LAynn, dSinCosLA)
ORX_KERNEL_OF(two_results, d, SinCos, G9EPnnn, dSinCosEP)
