// ln x, double.
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dLnHA = DoubleLogHA<LnDescription>;
using dLnLA = DoubleLogLA<LnDescription>;
using dLnEP = DoubleLogLA<LnDescription, true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Ln, G9HAynn, dLnHA)
ORX_KERNEL(d, Ln, G9LAynn, dLnLA)
ORX_KERNEL(d, Ln, G9EPnnn, dLnEP)
