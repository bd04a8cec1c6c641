// erf x, double.
#include "erf/vderf.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dErfLA = dErfLow<false>;
using dErfEP = dErfLow<true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Erf, G9HAynn, dErfHA)
ORX_KERNEL(d, Erf, G9LAynn, dErfLA)
ORX_KERNEL(d, Erf, G9EPnnn, dErfEP)
