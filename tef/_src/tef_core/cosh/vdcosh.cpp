// cosh x, double, by the halves that sinh is made of.
#include "frame/classes.hpp"
#include "sinh/vdsinh.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<double> least = 0x1p-300;  // what magnitudes are raised to, so that squares do not underflow
  // (sinh r - r) / r^3, |r| <= ln2/256, to 2^-68.1 of sinh r
  Row<double> s[2] = {0x1.55555555554bp-3, 0x1.1111156a095dap-7};
} constexpr vdcosh_data{};

int vdcosh_cout_rare(const double*, double* r) {
  *r = raise_overflow<double>();
  return StatusOverflow;
}

template <class F>
struct dCosh : dSinhKernel<F> {
  static constexpr int kTogether = 2;
  template <class X>
  static X eval(X x) {
    return F::template scaled<0>(max(magnitude(x), vdcosh_data.least));
  }
  template <class X>
  static X signed_as(X y, X) {
    return y;
  }
  static int rare_lane(const double* a, double* r) { return vdcosh_cout_rare(a, r); }
};
struct dCoshHA : dCosh<dCoshHA> {
  template <int orders, class X>
  static X scaled(X size) {
    const auto h = ExponentialHalves<X>::template with_rests<orders>(size, size);
    const X r2 = h.r * h.r, c = cosh_rest(r2), s = h.r + (h.r * r2) * horner(r2, vdcosh_data.s);
    const X C = h.a + h.b, C_lo = (h.a - C) + h.b;
    return C + (C_lo + (h.a * (c + s + h.a_rest) + h.b * (c - s + h.b_rest)));
  }
};
struct dCoshLA : dCosh<dCoshLA> {
  template <int orders, class X>
  static X scaled(X size) {
    const auto h = ExponentialHalves<X>::template without_rests<orders>(size, size);
    const X r2 = h.r * h.r, c = cosh_rest(r2), s = h.r + (h.r * r2) * horner(r2, vdcosh_data.s);
    const X C = h.a + h.b, S = h.a - h.b;
    return C + (C * c + S * s);
  }
};
struct dCoshEP : dCosh<dCoshEP> {
  template <int orders, class X>
  static X scaled(X size) {
    const auto h = ExponentialHalves<X>::template without_rests<orders>(size, size);
    const X C = h.a + h.b, S = h.a - h.b;
    return C + (C * (h.r * h.r * vdsinh_data.half) + S * h.r);
  }
};

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, d, Cosh)
