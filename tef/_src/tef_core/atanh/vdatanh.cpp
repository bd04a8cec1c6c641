// atanh x, double: half of ln u, u = (1 + |x|)/(1 - |x|). With R near 1/u and
//
//   e/2 = tanh(ln(u R)/2) = (R (1 + |x|) - (1 - |x|)) / (R (1 + |x|) + (1 - |x|))
//
// it is half of ln(1/R) + 2 atanh(e/2). For small x R is made 1, e is 2 |x|, and the polynomial reaches that far.
#include "atanh/short_reciprocal.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<double> one = 1.0, half = 0.5;
  Row<double> small = 0x1p-6;   // below this R is 1 and e is 2 |x|
  Row<double> tiny = 0x1p-200;  // below this the cube would underflow
  // (2 atanh(e/2) - e) / e^3, |e| <= 1/32: to 2^-57.9 of 2 atanh(e/2), and to 2^-28.8 of 2 atanh(e/2)
  Row<double> c[3] = {0x1.5555555556a38p-4, 0x1.9999989c2081p-7, 0x1.24ad9cc1c86acp-9};
  Row<double> ep = 0x1.555ff05654d7p-4;
} constexpr vdatanh_data{};

int vdatanh_cout_rare(const double* a, double* r) {
  const double x = *a;
  if (x == 1 || x == -1) {
    *r = raise_divide_by_zero(x);
    return StatusSingularity;
  }
  *r = raise_invalid<double>();
  return StatusDomain;
}

// R and e.
template <class X>
struct AtanhReduced {
  X size, sum, difference;
  ShortReciprocal<X> u;

  explicit AtanhReduced(X x)
      : size(magnitude(x)),
        sum(vdatanh_data.one + size),
        difference(vdatanh_data.one - size),
        u(difference * approximate_reciprocal(sum), less(size, vdatanh_data.small)) {}

  X unless_tiny(X y) const { return keep(not_below(size, vdatanh_data.tiny), y); }

  // With the rounding errors of sum and difference; R (1 + |x|) without an error but the last.
  X e() const {
    const auto& one = vdatanh_data.one;
    const auto parts = split(sum);
    const X sum_lo = size - (sum - one), difference_lo = (one - difference) - size;
    const X numerator = ((u.R * parts.high - difference) + u.R * parts.low) + (u.R * sum_lo - difference_lo);
    return (numerator + numerator) / (u.R * sum + difference);
  }
  X e_ep() const {
    const X product = u.R * sum, numerator = product - difference;
    const X e = (numerator + numerator) / (product + difference);
    return select(less(size, vdatanh_data.small), size + size, e);
  }
};

// 2 atanh(e/2) - e, for e that are not so small that their squares underflow, or 0.
template <class X>
inline X atanh_rest(X e) {
  const X e2 = e * e;
  return (e * e2) * horner(e2, vdatanh_data.c);
}

struct dAtanh : Kernel<double(double)> {
  template <class X>
  static auto rare(X x) {
    return not_below(magnitude(x), vdatanh_data.one);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(unordered(x, x), [&](X nan) { return bit_and(nan, x + x); });
  }
  static int rare_lane(const double* a, double* r) { return vdatanh_cout_rare(a, r); }

 protected:
  template <class X>
  static X half_signed(X y, X x) {
    return with_sign_and_underflow_of(y * vdatanh_data.half, x);
  }
};
struct dAtanhHA : dAtanh {
  template <class X>
  static X eval(X x) {
    const AtanhReduced<X> f(x);
    const X e = f.e();
    return half_signed(f.u.log_ha(e, atanh_rest(f.unless_tiny(e))), x);
  }
};
struct dAtanhLA : dAtanh {
  template <class X>
  static X eval(X x) {
    const AtanhReduced<X> f(x);
    const X e = f.e();
    return half_signed(f.u.log_la(e, atanh_rest(f.unless_tiny(e))), x);
  }
};
struct dAtanhEP : dAtanh {
  template <class X>
  static X eval(X x) {
    const auto& d = vdatanh_data;
    const AtanhReduced<X> f(x);
    const X e = f.e_ep(), q = f.unless_tiny(e);
    return half_signed(f.u.log_la(e, (q * q * q) * d.ep), x);
  }
};

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, d, Atanh)
