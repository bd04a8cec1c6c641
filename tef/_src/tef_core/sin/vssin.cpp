// sin x, single.
#include "sin/vssincos.hpp"

ORX_ISA_BEGIN(orx::tef)

int vssin_cout_rare(const float* a, float* r) { return sine_of_special(a, r); }

ORX_ISA_END

ORX_SINES(unary, s, Sin, Sine)
