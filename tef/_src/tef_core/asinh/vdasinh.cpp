// asinh x, double: ln u, u = |x| + s, s = sqrt(x^2 + 1). With R near 1/u (short_reciprocal.hpp tells the plan) and
// c = (1/R - R)/2, which is the sinh of ln(1/R),
//
//   d = |x| cosh ln(1/R) - s sinh ln(1/R) = (x^2 - c^2) / (|x| (1/R + R)/2 + s c),
//
// numerator and denominator multiplied by 4 R^2: (2 R |x|)^2 - (1 - R^2)^2 above.
#include "_heap/real/short_reciprocal.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<double> one = 1.0;
  Row<double> small = 0x1p-6;    // below this R is 1, and d is |x|
  Row<double> tiny = 0x1p-200;   // below this the cube would underflow
  Row<double> least = 0x1p-300;  // what magnitudes are raised to where squares would underflow and 0/0 appear
  Row<double> rare_from = 0x1p100;  // there u is beyond the range of approximate reciprocals
  Row<double> largest = DBL_MAX;
} constexpr vdasinh_data{};

// R, and what does not need d in full accuracy.
template <class X>
struct AsinhReduced {
  X size, raised, s;
  ShortReciprocal<X> u;

  explicit AsinhReduced(X x)
      : size(magnitude(x)),
        raised(max(size, vdasinh_data.least)),
        s(square_root(multiply_add(raised, raised, vdasinh_data.one))),
        u(approximate_reciprocal(size + s), less(size, vdasinh_data.small)) {}

  X unless_tiny(X y) const { return keep(not_below(size, vdasinh_data.tiny), y); }

  X d() const {
    const X twice = u.R + u.R, R2 = u.R * u.R, C = vdasinh_data.one + R2, S = vdasinh_data.one - R2;
    const X first = product_residue(size, twice, S);  // 2 R |x| - (1 - R^2), exact but for the last sum
    const X x = twice * raised;
    return first * ((x + S) / multiply_add(C, x, S * (twice * s)));
  }
};

// Infinities and NaN are x + x; for finite large arguments 1 does not matter under the root.
struct dAsinh : Kernel<double(double)> {
  template <class X>
  static auto rare(X x) {
    return not_below(magnitude(x), vdasinh_data.rare_from);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const X size = magnitude(x);
    left.finish(not_at_most(size, vdasinh_data.largest),
                [&](X special) { return bit_and(special, x) + bit_and(special, x); });
    left.finish(left.lanes, [&](X large) {
      const X v = select(large, size, broadcast<X>(1));
      return with_sign_of(LogHA<LnDescription>::log(v, exponent_field(v) + vdasinh_data.one), x);
    });
  }
};
struct dAsinhHA : dAsinh {
  template <class X>
  static X eval(X x) {
    const AsinhReduced<X> f(x);
    const X d = f.d(), q = f.unless_tiny(d);
    return with_sign_and_underflow_of(f.u.log_ha(d, asinh_rest(q)), x);
  }
};
struct dAsinhLA : dAsinh {
  template <class X>
  static X eval(X x) {
    const AsinhReduced<X> f(x);
    const X d = f.d(), q = f.unless_tiny(d);
    return with_sign_and_underflow_of(f.u.log_la(d, asinh_rest(q)), x);
  }
};
struct dAsinhEP : dAsinh {
  template <class X>
  static X eval(X x) {
    const AsinhReduced<X> f(x);
    const X d = f.d(), q = f.unless_tiny(d);
    return with_sign_and_underflow_of(f.u.log_la(d, asinh_rest_ep(q)), x);
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Asinh, G9HAynn, dAsinhHA)
ORX_KERNEL(d, Asinh, G9LAynn, dAsinhLA)
ORX_KERNEL(d, Asinh, G9EPnnn, dAsinhEP)
