// cos x + i sin x, single.
#include "cis/cis.hpp"
#include "frame/classes.hpp"
#include "sin/vssincos.hpp"

ORX_ISA_BEGIN(orx::tef)
using cCISHA = Cis<float, sSinHA<Wanted::Both>, true>;
using cCISLA = Cis<float, sSinLA<Wanted::Both>, true>;
using cCISEP = Cis<float, sSinEP<Wanted::Both>, true>;
ORX_ISA_END
ORX_KERNELS(unary, c, CIS)
