// The tables of the natural logarithm, which no instruction set changes.
#include "ln/vdln.hpp"

namespace orx::tef {

alignas(64) const double _tefdLnHATab[513][2] = {
#include "ln/vdln.inc"
};
alignas(64) const double kLnLaTable[513][2] = {
#include "ln/vdln_la.inc"
};

}  // namespace orx::tef
