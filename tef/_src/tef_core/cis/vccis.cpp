// cos x + i sin x, single.
#include "cis/cis.hpp"
#include "sin/vssincos.hpp"

using namespace orx::tef;
using cCISHA = Cis<float, sSinHA<Wanted::Both>, true>;
using cCISLA = Cis<float, sSinLA<Wanted::Both>, true>;
using cCISEP = Cis<float, sSinEP<Wanted::Both>, true>;
ORX_KERNEL(c, CIS, G9HAynn, cCISHA)
ORX_KERNEL(c, CIS, G9LAynn, cCISLA)
ORX_KERNEL(c, CIS, G9EPnnn, cCISEP)
