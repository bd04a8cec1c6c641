// sin x, single.
#include "sin/vssincos.hpp"

ORX_ISA_BEGIN(orx::tef)

int vssin_cout_rare(const float* a, float* r) {
  const float x = hidden(*a);
  const bool infinite = bit_cast<uint32_t>(x) << 1 == uint32_t{0xFF} << 24;
  *r = infinite ? x * 0.0f : x * x;
  return infinite ? StatusDomain : StatusOk;
}

ORX_ISA_END

ORX_ISA_BEGIN(orx::tef)
namespace {
using sSinHA = sSinDouble<Wanted::Sine>;
using sSinLA = sSinPolynomial<Wanted::Sine, false>;
using sSinEP = sSinPolynomial<Wanted::Sine, true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Sin, G9HAynn, sSinHA)
ORX_KERNEL(s, Sin, G9LAynn, sSinLA)
ORX_KERNEL(s, Sin, G9EPnnn, sSinEP)
