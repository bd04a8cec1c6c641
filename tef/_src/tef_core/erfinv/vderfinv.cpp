// The inverse error function, double.
#include "erfinv/inverse_erf.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int vderfinv_cout_rare(const double* a, double* r) { return erfinv_cout_rare(*a, r); }

template <class Rows, InverseErfTable<Rows>& table>
struct dErfInv : Kernel<double(double)> {
  static constexpr int kTogether = 2;

  template <class X>
  static auto rare(X x) {
    return outside(magnitude(x), kTiny, kBelowOne);
  }
  template <class X>
  static X eval(X x) {
    return erfinv_by_rows<Rows>(table, x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(less(magnitude(x), kTiny), [&](X tiny) {
      return tiny_product(bit_and(tiny, x), 0x1.c5bf891b4ef6bp-1, -0x1.618f13eb7ca89p-55);  // sqrt(pi)/2
    });
  }
  static int rare_lane(const double* a, double* r) { return vderfinv_cout_rare(a, r); }

 private:
  static constexpr Row<double> kTiny = 0x1p-100, kBelowOne = 0x1.fffffffffffffp-1;
};
using dErfInvHA = dErfInv<InverseErfHA, _tefdErfInvHATab>;
using dErfInvLA = dErfInv<InverseErfLA, kErfInvLaTable>;
using dErfInvEP = dErfInv<InverseErfEP, kErfInvEpTable>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, ErfInv, G9HAynn, dErfInvHA)
ORX_KERNEL(d, ErfInv, G9LAynn, dErfInvLA)
ORX_KERNEL(d, ErfInv, G9EPnnn, dErfInvEP)
