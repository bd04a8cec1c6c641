// The table of sinh and cosh, which no instruction set changes.
#include "sinh/vdsinh.hpp"

namespace orx::tef {

alignas(64) const double _tefdSinhHATab[128][4] = {
#include "sinh/vdsinh.inc"
};

}  // namespace orx::tef
