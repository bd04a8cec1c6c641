// sin x, double.
#include "sin/vdsincos.hpp"

namespace orx::tef {
alignas(64) const double kSinTable[512][4] = {
#include "sin/vdsin_ha.inc"
};
alignas(64) const double kPlainSinTable[512][2] = {
#include "sin/vdsin_la.inc"
};
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

int vdsin_cout_rare(const double* a, double* r) { return sine_of_special(a, r); }

ORX_ISA_END

ORX_SINES(unary, d, Sin, Sine)
