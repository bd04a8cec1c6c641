// erfc x, double.
#include "erfc/vderfc.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dErfcHA = Complement<ErfcDescription, Accuracy::kHA>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Erfc, G9HAynn, dErfcHA)
