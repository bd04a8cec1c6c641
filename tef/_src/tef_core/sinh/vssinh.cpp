// sinh x, single.
#include "sinh/vssinh.hpp"
#include "_heap/real/horner_of_pairs.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<float> one = 1.0f;
  Row<float> tiny = 0x1p-28f;  // sinh x is x below it, and nothing has to be added, which would underflow
  // (sinh r - r) / r^3, |r| <= 1: to 2^-31.3 of sinh r, and to 2^-17 of sinh r
  Row<float> la[4] = {0x1.555556p-3f, 0x1.1110eap-7f, 0x1.a01c22p-13f, 0x1.76771ep-19f};
  Row<float> ep[2] = {0x1.552904p-3f, 0x1.1a270ep-7f};
} constexpr vssinh_single_data{};

int vssinh_cout_rare(const float* a, float* r) {
  *r = *a < 0 ? -raise_overflow<float>() : raise_overflow<float>();
  return StatusOverflow;
}

struct sSinhHA : sSinhKernel<sSinhHA> {
  template <class X>
  static X eval(X x) {
    return signed_as(narrow(WideHyperbolic(widen(magnitude(x))).sinh()), x);
  }
  template <class X>
  static X signed_as(X y, X x) {
    return with_sign_and_underflow_of(y, x);
  }
  static int rare_lane(const float* a, float* r) { return vssinh_cout_rare(a, r); }
};
template <bool ep>
struct sSinhLow : sSinhKernel<sSinhHA> {
  static constexpr int kTogether = ep ? 1 : 2;
  template <class X>
  static X eval(X x) {
    const auto& d = vssinh_single_data;
    const X size = magnitude(x);
    const SingleHalves<X> h(size, keep(not_below(size, d.one), size), ep);
    const X q = keep(not_below(size, d.tiny), h.r), r2 = q * q;
    X c, s;  // cosh r - 1 and sinh r / r - 1
    if constexpr (ep) {
      c = r2 * horner(r2, vssinh_data.ep_c);
      s = r2 * horner(r2, d.ep);
    } else {
      c = r2 * horner(r2, vssinh_data.c);
      s = r2 * horner_of_pairs(r2, r2 * r2, d.la);
    }
    return with_sign_and_underflow_of(h.sum(h.S, h.C, c, s), x);
  }
  static int rare_lane(const float* a, float* r) { return vssinh_cout_rare(a, r); }
};
using sSinhLA = sSinhLow<false>;
using sSinhEP = sSinhLow<true>;

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, s, Sinh)
