// The rows of the inverses of the error function, its complement and the normal distribution, which no instruction set changes.
#include "erfinv/inverse_erf.hpp"

namespace orx::tef {

alignas(64) const double _tefdErfInvHATab[kInverseErfRows][InverseErfHA::kColumns] = {
#include "erfinv/vderfinv.inc"
};
alignas(64) const double kErfInvLaTable[kInverseErfRows][InverseErfLA::kColumns] = {
#include "erfinv/vderfinv_la.inc"
};
alignas(64) const double kErfInvEpTable[kInverseErfRows][InverseErfEP::kColumns] = {
#include "erfinv/vderfinv_ep.inc"
};
alignas(64) const double dErfcInv_HA_Table[kInverseErfTailRows][InverseErfHA::kColumns] = {
#include "erfcinv/vderfcinv_tail.inc"
};

alignas(64) const double kCdfNormInvTable[kInverseErfRows][InverseErfHA::kColumns] = {
#include "cdfnorminv/vdcdfnorminv.inc"
};
alignas(64) const double kCdfNormInvLaTable[kInverseErfRows][InverseErfLA::kColumns] = {
#include "cdfnorminv/vdcdfnorminv_la.inc"
};
alignas(64) const double kCdfNormInvEpTable[kInverseErfRows][InverseErfEP::kColumns] = {
#include "cdfnorminv/vdcdfnorminv_ep.inc"
};
alignas(64) const double kCdfNormInvTailTable[kInverseErfTailRows][InverseErfHA::kColumns] = {
#include "cdfnorminv/vdcdfnorminv_tail.inc"
};

}  // namespace orx::tef
