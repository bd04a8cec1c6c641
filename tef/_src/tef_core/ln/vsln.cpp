// ln x, single.
#include "frame/classes.hpp"
#include "ln/slog.hpp"
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

using sLnHA = SingleLog<vdln_cout_rare, SlnHA>;
using sLnLA = SingleLog<vdln_cout_rare, SlnLA>;
using sLnEP = SingleLog<vdln_cout_rare, SlnEP>;

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, s, Ln)
