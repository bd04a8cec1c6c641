// x^y, double.
#include "pow/vdpow.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

using dPowHA = dPow<double(double, double), PowHA>;
using dPowLA = dPow<double(double, double), PowLA>;
using dPowEP = dPow<double(double, double), PowEP>;

}  // namespace

int vdpow_cout_rare(const double* a, const double* b, double* r) {
  const Exponent z(*a, *b);
  if (z.high > 710) return settle_power(raise_overflow<double>(), z.negative, r);
  if (z.high < -746) return settle_power(0.0, z.negative, r);
  return settle_power(vdexp_wide(z.high, z.low), z.negative, r);
}

ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(binary, d, Pow, G9HAynn, dPowHA)
ORX_KERNEL_OF(binary, d, Pow, G9LAynn, dPowLA)
ORX_KERNEL_OF(binary, d, Pow, G9EPnnn, dPowEP)
