// x^y, single.
#include "pow/vspow.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

using sPowHA = sPow<float(float, float), PowInDoubles>;
using sPowEP = sPow<float(float, float), PowInSingles>;

}  // namespace

// In doubles, which are rounded to singles at the end; beyond e^200 all is out of their range.
int vspow_cout_rare(const float* a, const float* b, float* r) {
  const Exponent z(static_cast<double>(*a), static_cast<double>(*b));
  const bool wide = z.high < -200 || z.high > 200;
  const double size = wide ? vdexp_moderate(z.high > 0 ? 200 : -200) : vdexp_wide(z.high, z.low);
  return settle_power(static_cast<float>(hidden(size)), z.negative, r);
}

ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(binary, s, Pow, G9HAynn, sPowHA)
ORX_KERNEL_OF(binary, s, Pow, G9EPnnn, sPowEP)
