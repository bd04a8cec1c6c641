// erfc x, single, for processors without AVX.
#include "erfc/vderfc.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using sErfc = SingleComplement<ErfcDescription>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Erfc, W7HAynn, sErfc)
ORX_KERNEL(s, Erfc, W7LAynn, sErfc)
ORX_KERNEL(s, Erfc, W7EPnnn, sErfc)
