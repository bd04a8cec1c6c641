// The tables of the normal distribution, which no instruction set changes.
#include "cdfnorm/vdcdfnorm.hpp"

namespace orx::tef {

alignas(64) const double vdcdfnorm_table[4928][2] = {
#include "cdfnorm/vdcdfnorm.inc"
};
alignas(64) const double _tefdCdfNormHATab[4928] = {
#include "cdfnorm/vdcdfnorm_low.inc"
};

}  // namespace orx::tef
