// sin x, double.
#include "sin/vdsincos.hpp"

namespace orx::tef {
alignas(64) const double kSinTable[512][4] = {
#include "sin/vdsin_ha.inc"
};
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

int vdsin_cout_rare(const double* a, double* r) {
  const double x = hidden(*a);
  const bool infinite = bit_cast<uint64_t>(x) << 1 == uint64_t{0x7FF} << 53;
  *r = infinite ? x * 0.0 : x * x;
  return infinite ? StatusDomain : StatusOk;
}

ORX_ISA_END

ORX_ISA_BEGIN(orx::tef)
namespace {
using dSinHA = dSinTable<Wanted::Sine>;
using dSinLA = dSinPolynomial<Wanted::Sine, false>;
using dSinEP = dSinPolynomial<Wanted::Sine, true>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Sin, G9HAynn, dSinHA)
ORX_KERNEL(d, Sin, G9LAynn, dSinLA)
ORX_KERNEL(d, Sin, G9EPnnn, dSinEP)
