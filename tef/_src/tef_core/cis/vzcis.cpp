// cos x + i sin x, double. HA makes NaN of infinities and does not report it.
#include "cis/cis.hpp"

using namespace orx::tef;
using zCISHA = Cis<double, dSinHA<Wanted::Both>, false>;
using zCISLA = Cis<double, dSinLA<Wanted::Both>, true>;
using zCISEP = Cis<double, dSinEP<Wanted::Both>, true>;
ORX_KERNEL(z, CIS, G9HAynn, zCISHA)
ORX_KERNEL(z, CIS, G9LAynn, zCISLA)
ORX_KERNEL(z, CIS, G9EPnnn, zCISEP)
