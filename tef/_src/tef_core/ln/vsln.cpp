// ln x, single.
#include "ln/slog.hpp"
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

using sLnHA = SingleLog<vdln_cout_rare, SlnHA>;
using sLnLA = SingleLog<vdln_cout_rare, SlnLA>;
using sLnEP = SingleLog<vdln_cout_rare, SlnEP>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Ln, G9HAynn, sLnHA)
ORX_KERNEL(s, Ln, G9LAynn, sLnLA)
ORX_KERNEL(s, Ln, G9EPnnn, sLnEP)
