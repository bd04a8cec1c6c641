// sin x and cos x, single.
#include "sin/vssincos.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sSinCosHA = sSinDouble<Wanted::Both>;
using sSinCosLA = sSinPolynomial<Wanted::Both, false>;
using sSinCosEP = sSinPolynomial<Wanted::Both, true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(two_results, s, SinCos, G9HAynn, sSinCosHA)
ORX_KERNEL_OF(two_results, s, SinCos, G9LAynn, sSinCosLA)
ORX_KERNEL_OF(two_results, s, SinCos, G9EPnnn, sSinCosEP)
