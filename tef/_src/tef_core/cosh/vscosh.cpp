// cosh x, single, by the halves that sinh is made of.
#include "frame/classes.hpp"
#include "sinh/vssinh.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<float> least = 0x1p-30f;  // what magnitudes are raised to, so that squares do not underflow
  // (sinh r - r) / r^3, |r| <= ln2/2: to 2^-26.1 of sinh r, and to 2^-15.5 of sinh r
  Row<float> la[2] = {0x1.5554bp-3f, 0x1.12279p-7f};
  Row<float> ep = 0x1.570878p-3f;
} constexpr vscosh_data{};

int vscosh_cout_rare(const float*, float* r) {
  *r = raise_overflow<float>();
  return StatusOverflow;
}

struct sCoshHA : sSinhKernel<sCoshHA> {
  template <class X>
  static X eval(X x) {
    return narrow(WideHyperbolic(widen(magnitude(x))).cosh());
  }
  template <class X>
  static X signed_as(X y, X) {
    return y;
  }
  static int rare_lane(const float* a, float* r) { return vscosh_cout_rare(a, r); }
};
template <bool ep>
struct sCoshLow : sSinhKernel<sCoshHA> {
  static constexpr int kTogether = 2;
  template <class X>
  static X eval(X x) {
    const auto& d = vscosh_data;
    const X size = max(magnitude(x), d.least);
    const SingleHalves<X> h(size, size, ep);
    const X r2 = h.r * h.r;
    X c, s;  // cosh r - 1 and sinh r / r - 1
    if constexpr (ep) {
      c = r2 * horner(r2, vssinh_data.ep_c);
      s = r2 * d.ep;
    } else {
      c = r2 * horner(r2, vssinh_data.c);
      s = r2 * horner(r2, d.la);
    }
    return h.sum(h.C, h.S, c, s);
  }
  static int rare_lane(const float* a, float* r) { return vscosh_cout_rare(a, r); }
};
using sCoshLA = sCoshLow<false>;
using sCoshEP = sCoshLow<true>;

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, s, Cosh)
