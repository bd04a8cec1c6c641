// acos x, double.
#include "asin/arc.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
struct dAcosHA : ArcCosine<double, ArcHA> {
  static constexpr int kTogether = 2;
};
using dAcosLA = ArcCosine<double, ArcLA>;
using dAcosEP = ArcCosine<double, ArcEP>;
}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, d, Acos)
