// gamma x, single: as the double, rounded.
#include "tgamma/tgamma.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int vstgamma_cout_rare(const float* a, float* r) {
  double y;
  const int status = gamma_of(*a, &y);
  *r = static_cast<float>(hidden(y));  // raises what belongs to it
  if (status != StatusOk || !__builtin_isfinite(y)) return status;
  if (__builtin_fabsf(*r) > FLT_MAX) return StatusOverflow;
  return __builtin_fabs(y) < FLT_MIN ? StatusUnderflow : StatusOk;
}

struct sTGamma : ElementKernel<float(float)> {
  static int rare_lane(const float* a, float* r) { return vstgamma_cout_rare(a, r); }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, TGamma, G9HAynn, sTGamma)
