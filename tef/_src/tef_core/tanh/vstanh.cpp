// tanh x, single. HA computes in double, as EP does there. LA and EP: with H = (e^(2|x|) - 1)/2 =
// (2^(k-1) - 1/2) + 2^(k-1) (e^r - 1), 2|x| = k ln2 + r, it is H/(H + 1). For small x, where the terms would cancel, k is
// made 0: the polynomial of e^r - 1 reaches that far.
#include "tanh/vdtanh.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<float> small = 0.3f;               // below this k is 0
  Row<float> top = 10.0f;                // the result is 1 from 9.011 on
  Row<float> large = 0x1p-38f;           // takes r away where it is tiny and its square would underflow
  Row<float> inv = 0x1.715476p+1f;       // 2/ln 2
  Row<float> shifter = 0x1.8000fcp+23f;  // 1.5 * 2^23 + 126: the exponent's bias for 2^(k - 1)
  Row<float> ln2_hi = 0x1.62e4p-1f, ln2_lo = 0x1.7f7d1cp-20f, ln2 = 0x1.62e43p-1f;
  Row<float> half = 0.5f, one = 1.0f;
  // (e^r - 1 - r) / r^2, -ln2/2 <= r <= 0.62: to 2^-28 of e^r - 1, and to 2^-13.7 of e^r - 1
  Row<float> la[6] = {0x1p-1f,        0x1.555572p-3f,  0x1.555594p-5f,
                      0x1.10ead2p-7f, 0x1.6c8482p-10f, 0x1.d1d798p-13f};
  Row<float> ep[3] = {0x1.ff9be8p-2f, 0x1.57592p-3f, 0x1.7c2e34p-5f};
} constexpr vstanh_data{};

struct sTanh : Kernel<float(float)> {
  template <class X>
  static auto rare(X x) {
    return unordered(x, x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(left.lanes, bit_and(left.lanes, x + x));
  }
};
struct sTanhHA : sTanh {
  template <class X>
  static X eval(X x) {
    const auto wide = widen(x);
    const TanhCell f(wide);
    raise_underflow_of_denormals(min(magnitude(x), vstanh_data.top));
    return with_sign_of(narrow(f.tanh(vdtanh_data.ep)), x);
  }
};
template <bool ep>
struct sTanhLow : sTanh {
  static constexpr int kTogether = 2;
  template <class X>
  static X eval(X x) {
    const auto& d = vstanh_data;
    const X size = min(magnitude(x), d.top);
    const X N = multiply_add(keep(not_below(size, d.small), size), d.inv, d.shifter), k = N - d.shifter;
    const X twice = size + size;
    X r, p;
    if constexpr (ep) {
      r = subtract_product(twice, k, d.ln2);
      const X q = (r + d.large) - d.large;
      p = r + (q * q) * polynomial(q, q * q, d.ep);
    } else {
      r = subtract_product(subtract_product(twice, k, d.ln2_hi), k, d.ln2_lo);
      const X q = (r + d.large) - d.large, q2 = q * q;
      p = r + q2 * polynomial(q, q2, d.la);
    }
    const X power = scale_from<0>(N), H = (power - d.half) + power * p;
    raise_underflow_of_denormals(size);
    return with_sign_of(H / (H + d.one), x);
  }
};
using sTanhLA = sTanhLow<false>;
using sTanhEP = sTanhLow<true>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Tanh, G9HAynn, sTanhHA)
ORX_KERNEL(s, Tanh, G9LAynn, sTanhLA)
ORX_KERNEL(s, Tanh, G9EPnnn, sTanhEP)
