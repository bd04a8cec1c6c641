// The tables of the complementary error function, which no instruction set changes.
#include "erfc/vderfc.hpp"

namespace orx::tef {

alignas(64) const double vderfc_table[3488][2] = {
#include "erfc/vderfc.inc"
};
alignas(64) const double vderfc_low_table[3488] = {
#include "erfc/vderfc_low.inc"
};

}  // namespace orx::tef
