// sin x and cos x, double.
#include "sin/vdsincos.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dSinCosHA = dSinTable<Wanted::Both>;
using dSinCosLA = dSinPolynomial<Wanted::Both, false>;
using dSinCosEP = dSinPolynomial<Wanted::Both, true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(two_results, d, SinCos, G9HAynn, dSinCosHA)
ORX_KERNEL_OF(two_results, d, SinCos, G9LAynn, dSinCosLA)
ORX_KERNEL_OF(two_results, d, SinCos, G9EPnnn, dSinCosEP)
