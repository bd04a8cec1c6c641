// ln x, double.
#include "ln/vdln.hpp"

namespace orx::tef {

alignas(64) const double _tefdLnHATab[513][2] = {
#include "ln/vdln.inc"
};
alignas(64) const double kLnLaTable[513][2] = {
#include "ln/vdln_la.inc"
};

int vdln_cout_rare(const double* a, double* r) { return log_cout_rare<LnDescription>(a, r); }

namespace {
using dLnHA = DoubleLogHA<LnDescription>;
using dLnLA = DoubleLogLA<LnDescription>;
using dLnEP = DoubleLogLA<LnDescription, true>;
}  // namespace

}  // namespace orx::tef

using namespace orx::tef;
ORX_KERNEL(d, Ln, G9HAynn, dLnHA)
ORX_KERNEL(d, Ln, G9LAynn, dLnLA)
ORX_KERNEL(d, Ln, G9EPnnn, dLnEP)
