// The inverse of the complementary error function, double.
#include "erfinv/inverse_erf.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

// HA leaves the control word to the caller, whose rounding its results follow.
template <class Rows, InverseErfTable<Rows>& table>
struct dErfcInv : InverseOfProbability<double, 1> {
  static constexpr Control kControl = Rows::kTwoParts ? Control::kUntouched : Control::kMode;

  template <class X>
  static X eval(X x) {
    return erfcinv_by_rows<Rows>(table, x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(in_tail(x),
                [&](X tail) { return inverse_erf_tail<1>(dErfcInv_HA_Table, tail_argument(x, tail)); });
  }
  static int rare_lane(const double* a, double* r) { return no_result(*a, 1.0, r); }
};
using dErfcInvHA = dErfcInv<InverseErfHA, _tefdErfInvHATab>;
using dErfcInvLA = dErfcInv<InverseErfLA, kErfInvLaTable>;
using dErfcInvEP = dErfcInv<InverseErfEP, kErfInvEpTable>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, ErfcInv, G9HAynn, dErfcInvHA)
ORX_KERNEL(d, ErfcInv, G9LAynn, dErfcInvLA)
ORX_KERNEL(d, ErfcInv, G9EPnnn, dErfcInvEP)

// erfc^-1 of two numbers, from the least denormal to 2^-47.
ORX_API void dErfcInv_Tail(const double* y, double* r) { inverse_erf_tail_of_two(dErfcInv_HA_Table, y, r); }
