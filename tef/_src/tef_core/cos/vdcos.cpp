// cos x, double.
#include "sin/vdsincos.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dCosHA = dSinTable<Wanted::Cosine>;
using dCosLA = dSinPolynomial<Wanted::Cosine, false>;
using dCosEP = dSinPolynomial<Wanted::Cosine, true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Cos, G9HAynn, dCosHA)
ORX_KERNEL(d, Cos, G9LAynn, dCosLA)
ORX_KERNEL(d, Cos, G9EPnnn, dCosEP)
