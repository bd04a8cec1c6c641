// The tables of the gamma functions, which no instruction set changes.
#include "_heap/real/gamma.hpp"

namespace orx::tef {

alignas(64) const double kLGammaRows[57][kGammaColumns] = {
#include "_heap/real/lgamma.inc"
};
alignas(64) const double _tgamma_A_table[57][kGammaColumns] = {
#include "_heap/real/tgamma.inc"
};
alignas(64) const double kSingleGammaRows[273][8] = {
#include "_heap/real/tgamma_s.inc"
};
alignas(64) const double _tgamma_sin_table[9][kGammaColumns] = {
#include "_heap/real/tgamma_sin.inc"
};

}  // namespace orx::tef
