// asinh x, double, by cells (inverse_cells.hpp tells the plan). With s = sqrt(x^2 + 1) and S = sqrt(c^2 + 1)
//
//   d = |x| S - c s = (x^2 - c^2)/(|x| S + c s).
#include "_heap/real/inverse_cells.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<double> one = 1.0;
  Row<double> small = 0x1p-6, below_small = 0x1.fffffffffffffp-7, in_front = 0x1.f8p-7;
  Row<double> least = 0x1p-300;  // what magnitudes are raised to where squares would underflow and 0/0 appear
  Row<double> tiny = 0x1p-200;   // below this the cube would underflow
} constexpr vdasinh_data{};

// asinh c, sqrt(c^2 + 1), what asinh c lacks, c
alignas(64) constexpr double kAsinhTable[2048][4] = {
#include "asinh/vdasinh.inc"
};
// asinh c, sqrt(c^2 + 1)
alignas(64) constexpr double kAsinhLaTable[2048][2] = {
#include "asinh/vdasinh_la.inc"
};

// c, what the table says of it, and for HA what asinh c lacks.
template <class X>
struct AsinhCell {
  X c, T, S, T_lo;
};
template <bool ha, class X>
inline AsinhCell<X> asinh_cell(X size) {
  const auto& d = vdasinh_data;
  AsinhCell<X> of{};
  if constexpr (ha) {
    // c is nearest to the argument. So a power of two is a c, and not the end of a cell: where the result is just below it,
    // and the unit of its last place half as large, the difference is small, and with it the error.
    const SpilledWords<X> words(max(size, d.in_front));
    X row[4];
    gather_rows(
        kAsinhTable[0], [&](int lane) { return (words.high(lane) + (1 << 14)) >> 15 & 2047; }, row);
    of = {row[3], row[0], row[1], row[2]};
  } else {
    const InverseCell<2, X> cell(size, d.small, d.below_small);
    of.c = cell.c;
    gather_pairs<1>(kAsinhLaTable[0], cell, of.T, of.S);
  }
  return of;
}

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
    const auto cell = asinh_cell<ha>(size);
    const X ratio = (raised + cell.c) / multiply_add(raised, cell.S, cell.c * s);
    const X difference = (size - cell.c) * ratio;
    const X rest = asinh_rest<ep>(keep(not_below(size, d.tiny), difference));
    const X y = cell.T + (difference + (ha ? cell.T_lo + rest : rest));
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

ORX_KERNELS(unary, d, Asinh)
