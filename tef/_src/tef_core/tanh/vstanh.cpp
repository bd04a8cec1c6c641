// tanh x, single. HA computes in double, as EP does there. LA and EP: with H = (e^(2|x|) - 1)/2 =
// (2^(k-1) - 1/2) + 2^(k-1) (e^r - 1), 2|x| = k ln2 + r, it is H/(H + 1).
#include "frame/classes.hpp"
#include "tanh/vdtanh.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<float> top = 10.0f;                // the result is 1 from 9.011 on
  Row<float> tiny = 0x1p-28f;            // below, r counts without its powers, which would underflow
  Row<float> inv = 0x1.715476p+1f;       // 2/ln 2
  Row<float> shifter = 0x1.8000fcp+23f;  // 1.5 * 2^23 + 126: the exponent's bias for 2^(k - 1)
  Row<float> ln2 = 0x1.62e43p-1f;        // one part: where k is large, r does not matter much
  Row<float> half = 0.5f, one = 1.0f;
  // (e^r - 1 - r) / r^2, |r| <= ln2/2: to 2^-30.9 of e^r - 1, and to 2^-15.5 of e^r - 1
  Row<float> la[6] = {0x1p-1f,        0x1.555554p-3f,  0x1.5554fp-5f,
                      0x1.111302p-7f, 0x1.6d437ep-10f, 0x1.9e170ap-13f};
  Row<float> ep[3] = {0x1.000222p-1f, 0x1.5708dcp-3f, 0x1.54ea8p-5f};
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
  template <class X>
  static X eval(X x) {
    const auto& d = vstanh_data;
    const X size = min(magnitude(x), d.top);
    const X N = multiply_add(size, d.inv, d.shifter), k = N - d.shifter;
    const X r = subtract_product(size + size, k, d.ln2), q = keep(not_below(size, d.tiny), r), q2 = q * q;
    X p;
    if constexpr (ep)
      p = r + q2 * polynomial(q, q2, d.ep);
    else
      p = r + q2 * polynomial(q, q2, d.la);
    const X power = scale_from<0>(N), H = (power - d.half) + power * p;
    raise_underflow_of_denormals(size);
    return with_sign_of(H / (H + d.one), x);
  }
};
using sTanhLA = sTanhLow<false>;
using sTanhEP = sTanhLow<true>;

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, s, Tanh)
