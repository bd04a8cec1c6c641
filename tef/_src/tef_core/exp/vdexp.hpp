// What the exponential functions of double precision share.
#pragma once
#include <cfloat>

#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

// 2^(j/64), j = 0 .. 63: a double, and what it lacks as a fraction of it.
alignas(64) inline constexpr double _tefdExpHATab[64][2] = {
#include "exp/vdexp_ha.inc"
};

// 2^k, k in the range of normal numbers.
inline double power_of_two(int k) { return bit_cast<double>(static_cast<uint64_t>(k + 1023) << 52); }

// e^x for |x| below 700, as accurate as the HA kernel.
double vdexp_moderate(double x);

// e^x for arguments that the vector code does not take; the status to report.
int vdexp_cout_rare(const double* a, double* r);

ORX_ISA_END
