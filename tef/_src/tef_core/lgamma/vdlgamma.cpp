// ln |gamma x|, double.
#include "lgamma/lgamma.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int vdlgamma_cout_rare(const double* a, double* r) { return log_gamma_of(*a, r); }

struct dLGamma : ElementKernel<double(double)> {
  static int rare_lane(const double* a, double* r) { return vdlgamma_cout_rare(a, r); }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, LGamma, G9HAynn, dLGamma)
