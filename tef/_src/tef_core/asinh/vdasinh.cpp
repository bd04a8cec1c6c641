// asinh x, double, by cells (inverse_cells.hpp tells the plan). With s = sqrt(x^2 + 1) and S = sqrt(c^2 + 1)
//
//   d = |x| S - c s = (x^2 - c^2)/(|x| S + c s).
#include "_heap/real/inverse_cells.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<double> one = 1.0;
  Row<double> small = 0x1p-6, below_small = 0x1.fffffffffffffp-7;
  Row<double> least = 0x1p-300;  // what magnitudes are raised to where squares would underflow and 0/0 appear
  Row<double> tiny = 0x1p-200;   // below this the cube would underflow
} constexpr vdasinh_data{};

// asinh c, sqrt(c^2 + 1), what asinh c lacks
alignas(64) constexpr double kAsinhTable[2048][4] = {
#include "asinh/vdasinh.inc"
};

template <bool ha, bool ep>
struct dAsinh : Kernel<double(double)> {
  template <class X>
  static auto rare(X x) {
    return not_at_most(magnitude(x), kInverseCells.usual_to);
  }
  template <class X>
  static X eval(X x) {
    const auto& d = vdasinh_data;
    const X size = magnitude(x), raised = max(size, d.least);
    const X s = square_root(multiply_add(raised, raised, d.one));
    const InverseCell<X> cell(size, d.small, d.below_small);
    X T, S, T_lo{}, unused;
    gather_pairs<1>(kAsinhTable[0], cell, T, S);
    if constexpr (ha) gather_pairs<1>(kAsinhTable[0] + 2, cell, T_lo, unused);
    const X ratio = (raised + cell.c) / multiply_add(raised, S, cell.c * s);
    const X difference = (size - cell.c) * ratio;
    const X rest = asinh_rest<ep>(keep(not_below(size, d.tiny), difference));
    const X y = T + (difference + (ha ? T_lo + rest : rest));
    return with_sign_and_underflow_of(y, x);
  }
  // Infinities and NaN are x + x.
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const X size = magnitude(x);
    left.finish(not_at_most(size, kInverseCells.largest),
                [&](X special) { return bit_and(special, x) + bit_and(special, x); });
    left.finish(left.lanes, [&](X large) { return with_sign_of(log_of_twice(large, size), x); });
  }
};

using dAsinhHA = dAsinh<true, false>;
using dAsinhLA = dAsinh<false, false>;
using dAsinhEP = dAsinh<false, true>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Asinh, G9HAynn, dAsinhHA)
ORX_KERNEL(d, Asinh, G9LAynn, dAsinhLA)
ORX_KERNEL(d, Asinh, G9EPnnn, dAsinhEP)
