// The inverse of the normal distribution, double: -sqrt(2) erfc^-1(2 p).
#include "erfinv/inverse_erf.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

template <class Rows, InverseErfTable<Rows>& table>
struct dCdfNormInv : InverseOfProbability<double, 2> {
  template <class X>
  static X eval(X p) {
    return cdfnorminv_by_rows<Rows>(table, p);
  }
  template <class X, class Left>
  static void finish(X p, Left& left) {
    left.finish(in_tail(p), [&](X tail) {
      return X{} - inverse_erf_tail<2>(kCdfNormInvTailTable, tail_argument(p, tail));
    });
  }
  static int rare_lane(const double* a, double* r) { return vdcdfnorminv_cout_rare(a, r); }

 private:
  static int vdcdfnorminv_cout_rare(const double* a, double* r) { return no_result(*a, -1.0, r); }
};
using dCdfNormInvHA = dCdfNormInv<InverseErfHA, kCdfNormInvTable>;
using dCdfNormInvLA = dCdfNormInv<InverseErfLA, kCdfNormInvLaTable>;
using dCdfNormInvEP = dCdfNormInv<InverseErfEP, kCdfNormInvEpTable>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, CdfNormInv, G9HAynn, dCdfNormInvHA)
ORX_KERNEL(d, CdfNormInv, G9LAynn, dCdfNormInvLA)
ORX_KERNEL(d, CdfNormInv, G9EPnnn, dCdfNormInvEP)

// The magnitude of the inverse normal distribution at y/2, of two numbers y from the least denormal to 2^-47.
ORX_API void dCdfNormInv_Tail(const double* y, double* r) {
  inverse_erf_tail_of_two(kCdfNormInvTailTable, y, r);
}
