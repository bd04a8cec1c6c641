// x^(3/2), single, for processors without AVX.
#include "pow3o2/pow3o2.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sPow3o2EP = Pow3o2<float, RoundedTwice>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Pow3o2, P8EPnnn, sPow3o2EP)
