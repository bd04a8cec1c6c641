// x^y for one y, double.
#include "pow/vdpow.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

using dPowxHA = dPow<double(double, Scalar<double>), PowHA>;
using dPowxLA = dPow<double(double, Scalar<double>), PowLA>;
using dPowxEP = dPow<double(double, Scalar<double>), PowEP>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(scalar_second, d, Powx, G9HAynn, dPowxHA)
ORX_KERNEL_OF(scalar_second, d, Powx, G9LAynn, dPowxLA)
ORX_KERNEL_OF(scalar_second, d, Powx, G9EPnnn, dPowxEP)
