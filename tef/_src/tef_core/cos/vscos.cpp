// cos x, single.
#include "sin/vssincos.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sCosHA = sSinDouble<Wanted::Cosine>;
using sCosLA = sSinPolynomial<Wanted::Cosine, false>;
using sCosEP = sSinPolynomial<Wanted::Cosine, true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Cos, G9HAynn, sCosHA)
ORX_KERNEL(s, Cos, G9LAynn, sCosLA)
ORX_KERNEL(s, Cos, G9EPnnn, sCosEP)
