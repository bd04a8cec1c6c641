// tan x, double.
#include "tan/vdtan.hpp"

namespace orx::tef {
alignas(64) const double kTanTable[128][2] = {
#include "tan/vdtan.inc"
};
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

int vdtan_cout_rare(const double* a, double* r) { return vdsin_cout_rare(a, r); }

namespace {
using dTanHA = dTanByTable;
using dTanLA = dTanRational;
}  // namespace

ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Tan, G9HAynn, dTanHA)
ORX_KERNEL(d, Tan, G9LAynn, dTanLA)
