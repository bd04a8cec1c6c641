// acosh x, double: ln u, u = x + s, s = sqrt(x^2 - 1). With R near 1/u (short_reciprocal.hpp tells the plan) and
// c = (1/R + R)/2, which is the cosh of ln(1/R),
//
//   d = s cosh ln(1/R) - x sinh ln(1/R) = (x^2 - c^2) / (s c + x (1/R - R)/2),
//
// numerator and denominator multiplied by 4 R^2. Near 1, where R is 1, d is s, with the rounding error of the root.
#include "_heap/real/short_reciprocal.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<double> one = 1.0, two = 2.0, half = 0.5;
  Row<double> near_1 = 0x1.0008p+0;     // up to here, s up to 1/64, R is 1
  Row<double> least = 0x1p-60;          // what s is raised to, where it is 0
  Row<double> largest_usual = 0x1p100;  // above u is beyond the range of approximate reciprocals
  Row<double> largest = DBL_MAX;
} constexpr vdacosh_data{};

int vdacosh_cout_rare(const double*, double* r) {
  *r = raise_invalid<double>();
  return StatusDomain;
}

template <class X>
struct AcoshReduced {
  X x, above_1, square, s;
  ShortReciprocal<X> u;

  explicit AcoshReduced(X argument)
      : x(argument),
        above_1(x - vdacosh_data.one),
        square(above_1 * (x + vdacosh_data.one)),
        s(square_root(square)),
        u(approximate_reciprocal(x + s), near_1()) {}

  auto near_1() const { return less(x, vdacosh_data.near_1); }

  // d, and near 1 what s lacks.
  HighLow<X> d() const {
    const auto& one = vdacosh_data.one;
    const X twice = u.R + u.R, R2 = u.R * u.R, C = one + R2, S = one - R2;
    const X first = product_residue(x, twice, C);  // 2 R x - (1 + R^2), exact but for the last sum
    const X double_x = twice * x, double_s = twice * max(s, vdacosh_data.least);
    const X ratio = (double_x + C) / multiply_add(C, double_s, S * double_x);
    // x^2 - 1 is 2 w + w^2, w = x - 1, and w^2 is small. The ratio is nearly 1/s.
    const auto parts = split(s);
    const X residue =
        (((above_1 + above_1) - parts.high * parts.high) - (s + parts.high) * parts.low) + above_1 * above_1;
    return {select(near_1(), s, first * ratio), keep(near_1(), residue * (vdacosh_data.half * ratio))};
  }
};

// Infinity and NaN are x + x; for finite large arguments 1 does not matter under the root; below 1 there is nothing.
struct dAcosh : Kernel<double(double)> {
  static constexpr double kSafe = 2.0;
  template <class X>
  static auto rare(X x) {
    return outside(x, vdacosh_data.one, vdacosh_data.largest_usual);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const auto& d = vdacosh_data;
    left.finish(not_at_most(x, d.largest),
                [&](X special) { return bit_and(special, x) + bit_and(special, x); });
    left.finish(less(broadcast<X>(1), x), [&](X large) {
      const X v = select(large, x, broadcast<X>(1));
      return LogHA<LnDescription>::log(v, exponent_field(v) + d.one);
    });
  }
  static int rare_lane(const double* a, double* r) { return vdacosh_cout_rare(a, r); }
};
struct dAcoshHA : dAcosh {
  template <class X>
  static X eval(X x) {
    const AcoshReduced<X> f(x);
    const auto d = f.d();
    return f.u.log_ha(d.high, asinh_rest(d.high) + d.low);
  }
};
struct dAcoshLA : dAcosh {
  template <class X>
  static X eval(X x) {
    const AcoshReduced<X> f(x);
    const X d = f.d().high;
    return f.u.log_la(d, asinh_rest(d));
  }
};
struct dAcoshEP : dAcosh {
  template <class X>
  static X eval(X x) {
    const AcoshReduced<X> f(x);
    const X d = f.d().high;
    return f.u.log_la(d, asinh_rest_ep(d));
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Acosh, G9HAynn, dAcoshHA)
ORX_KERNEL(d, Acosh, G9LAynn, dAcoshLA)
ORX_KERNEL(d, Acosh, G9EPnnn, dAcoshEP)
