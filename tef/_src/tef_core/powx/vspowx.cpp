// x^y for one y, single.
#include "pow/vspow.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

using sPowxHA = sPow<float(float, Scalar<float>), PowInDoubles>;
using sPowxEP = sPow<float(float, Scalar<float>), PowInSingles>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(scalar_second, s, Powx, G9HAynn, sPowxHA)
ORX_KERNEL_OF(scalar_second, s, Powx, G9EPnnn, sPowxEP)
