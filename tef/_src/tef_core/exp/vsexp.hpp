// What the exponential functions of single precision share.
#pragma once
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

// e^x for arguments that the vector code does not take; the status to report.
int vsexp_cout_rare(const float* a, float* r);

ORX_ISA_END
