// gamma x, double.
#include "tgamma/tgamma.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int vdtgamma_cout_rare(const double* a, double* r) { return gamma_of(*a, r); }

struct dTGamma : ElementKernel<double(double)> {
  static int rare_lane(const double* a, double* r) { return vdtgamma_cout_rare(a, r); }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, TGamma, G9HAynn, dTGamma)
