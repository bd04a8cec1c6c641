// ln x, double.
#include "ln/vdln.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
using dLnHA = DoubleLogHA<LnDescription>;
using dLnLA = DoubleLogLA<LnDescription>;
using dLnEP = DoubleLogLA<LnDescription, true>;
}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, d, Ln)
