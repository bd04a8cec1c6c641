// acosh x, double, by cells of x - 1 (inverse_cells.hpp tells the plan). With s = sqrt(x^2 - 1) and S = sqrt(c^2 - 1)
//
//   d = s c - x S = (x^2 - c^2)/(s c + x S).
//
// Near 1 c is 1, and d is s, with the rounding error of the root.
#include "_heap/real/inverse_cells.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<double> one = 1.0, two = 2.0, quarter = 0.25;
  Row<double> near = 0x1p-13, below_near = 0x1.fffffffffffffp-14;  // x - 1 for s up to 1/64
  Row<double> least = 0x1p-60;                                     // what s is raised to, where it is 0
} constexpr vdacosh_data{};

// acosh c, sqrt(c^2 - 1), what acosh c lacks
alignas(64) constexpr double kAcoshTable[2048][4] = {
#include "acosh/vdacosh.inc"
};

// The scalar routine, for arguments below 1.
int vdacosh_cout_rare(const double*, double* r) {
  *r = raise_invalid<double>();
  return StatusDomain;
}

template <bool ha, bool ep>
struct dAcosh : Kernel<double(double)> {
  static constexpr double kSafe = 2.0;
  template <class X>
  static auto rare(X x) {
    return outside(x, vdacosh_data.one, kInverseCells.usual_to);
  }
  template <class X>
  static X eval(X x) {
    const auto& d = vdacosh_data;
    const X w = x - d.one, s = square_root(multiply_add(w, w, w + w));  // nearer than by x^2 - 1 or w (x + 1)
    const InverseCell<4, X> cell(w, d.near, d.below_near);
    X T, S, T_lo{}, unused;
    gather_pairs<1>(kAcoshTable[0], cell, T, S);
    if constexpr (ha) gather_pairs<1>(kAcoshTable[0] + 2, cell, T_lo, unused);
    const X ratio = ((w + cell.c) + d.two) / multiply_add(max(s, d.least), cell.c + d.one, x * S);
    const auto near = less(w, d.near);
    const X difference = select(near, s, (w - cell.c) * ratio);
    X rest = asinh_rest<ep>(difference);
    if constexpr (ha) {
      // What s lacks: x^2 - 1 is 2 w + w^2, and w^2 is small; near 1 the ratio is nearly 2/s.
      const auto parts = split(s);
      const X lost = (((w + w) - parts.high * parts.high) - (s + parts.high) * parts.low) + w * w;
      rest = rest + (T_lo + keep(near, lost * (ratio * d.quarter)));
    }
    return T + (difference + rest);
  }
  // Infinity and NaN are x + x. What is left is below 1.
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(not_at_most(x, kInverseCells.largest),
                [&](X special) { return bit_and(special, x) + bit_and(special, x); });
    left.finish(less(constant<X>(vdacosh_data.one), x), [&](X large) { return log_of_twice(large, x); });
  }
  static int rare_lane(const double* a, double* r) { return vdacosh_cout_rare(a, r); }
};
using dAcoshHA = dAcosh<true, false>;
using dAcoshLA = dAcosh<false, false>;
using dAcoshEP = dAcosh<false, true>;

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, d, Acosh)
