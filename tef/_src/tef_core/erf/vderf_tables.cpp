// The tables of the error function, which no instruction set changes.
#include "erf/vderf.hpp"

namespace orx::tef {

alignas(64) const double kErfTable[768][2] = {
#include "erf/vderf.inc"
};
alignas(64) const double _imldErfHATab[768] = {
#include "erf/vderf_low.inc"
};

}  // namespace orx::tef
