// cos x + i sin x, double. HA makes NaN of infinities and does not report it.
#include "cis/cis.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
using zCISHA = Cis<double, dSinHA<Wanted::Both>, false>;
using zCISLA = Cis<double, dSinLA<Wanted::Both>, true>;
using zCISEP = Cis<double, dSinEP<Wanted::Both>, true>;
ORX_ISA_END
ORX_KERNELS(unary, z, CIS)
