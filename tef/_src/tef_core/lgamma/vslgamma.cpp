// ln |gamma x|, single: as the double, rounded.
#include "lgamma/lgamma.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int vslgamma_cout_rare(const float* a, float* r) {
  double y;
  const int status = log_gamma_of(*a, &y);
  if (__builtin_isfinite(y) && y > FLT_MAX) {
    *r = raise_overflow<float>();
    return StatusOverflow;
  }
  *r = static_cast<float>(y);
  return status;
}

struct sLGamma : ElementKernel<float(float)> {
  static int rare_lane(const float* a, float* r) { return vslgamma_cout_rare(a, r); }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, LGamma, G9HAynn, sLGamma)
