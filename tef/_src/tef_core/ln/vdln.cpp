// ln x, double.
#include "ln/vdln.hpp"

#include <cfloat>

namespace orx::tef {
alignas(64) const double _tefdLnHATab[513][2] = {
#include "ln/vdln.inc"
};
alignas(64) const double dln_la_table[513][2] = {
#include "ln/vdln_la.inc"
};
}  // namespace orx::tef

ORX_ISA_BEGIN

double vdln_positive(double x) {
  using X = vec<double, 1>;
  double shift = 0.0;
  if (x < DBL_MIN) {
    x *= 0x1p60;
    shift = 60.0;
  }
  const X v = broadcast<X>(hidden(x));
  indices<X> R;
  const X e = log_reduce<ln_description>(log_fraction(v), R);
  const X k = exponent_field(v) - broadcast<X>(hidden(shift));
  return log_ha<ln_description>(k, R, e, ln_description::polynomial_ha(e)).v[0][0];
}

namespace {

int vdln_cout_rare(const double* a, double* r) {
  const double x = *a;
  if (!(x < 0) && (bit_cast<uint64_t>(x) >> 52 & 0x7FF) == 0x7FF) {  // NaN, +infinity
    *r = x * x;
    return StatusOk;
  }
  if (x > 0) {
    *r = vdln_positive(x);
    return StatusOk;
  }
  const double zero = hidden(0.0);
  if (x < 0) {
    *r = zero / zero;
    return StatusDomain;
  }
  *r = -1.0 / zero;
  return StatusSingularity;
}

constexpr row<double> smallest = DBL_MIN, largest = DBL_MAX;

struct dLn : kernel<double> {
  template <class X>
  static X rare(X x) {
    return outside(x, smallest, largest);
  }
  static int rare_lane(const double* a, double* r) { return vdln_cout_rare(a, r); }
};

struct dLnHA : dLn {
  template <class X>
  static X eval(X x) {
    indices<X> R;
    const X e = log_reduce<ln_description>(log_fraction(x), R);
    return log_ha<ln_description>(exponent_field(x), R, e, ln_description::polynomial_ha(e));
  }
};
struct dLnLA : dLn {
  template <class X>
  static X eval(X x) {
    indices<X> R;
    const X e = log_reduce<ln_description>(log_fraction(x), R);
    return log_la<ln_description>(exponent_field(x), R, e, ln_description::polynomial_la(e));
  }
};
struct dLnEP : dLn {
  template <class X>
  static X eval(X x) {
    indices<X> R;
    const X e = log_reduce<ln_description>(log_fraction(x), R);
    return log_la<ln_description>(exponent_field(x), R, e, ln_description::polynomial_ep(e));
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Ln, G9HAynn, dLnHA, 0.55, 1e-300, 1e300)
ORX_KERNEL(d, Ln, G9LAynn, dLnLA, 4.0, 1e-300, 1e300)
ORX_KERNEL(d, Ln, G9EPnnn, dLnEP, 0x1p26, 1e-300, 1e300)
