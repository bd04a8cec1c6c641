// atanh x, double.
//
// HA is half of ln u, u = (1 + |x|)/(1 - |x|). With R near 1/u and
//
//   e/2 = tanh(ln(u R)/2) = (R (1 + |x|) - (1 - |x|)) / (R (1 + |x|) + (1 - |x|))
//
// it is half of ln(1/R) + 2 atanh(e/2). For small x R is made 1, e is 2 |x|, and the polynomial reaches that far.
//
// LA and EP go by d = 1 - |x|. With D, the leading bits of d, and c = 1 - D, by the formula of the tangent of a difference
//
//   atanh |x| = atanh c + atanh t,  t = (|x| - c)/(d + D |x|),  |t| <= 1/64.
//
// |x| - c is exact, and nothing cancels in the divisor. For small x D is 1, c is 0, and t is |x|.
#include "atanh/short_reciprocal.hpp"
#include "frame/classes.hpp"

namespace orx::tef {
static const double kAtanhTable[53 * 32 + 1] = {
#include "atanh/vdatanh.inc"
};
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<double> one = 1.0, half = 0.5;
  Row<double> small = 0x1p-6;   // below this R is 1 and e is 2 |x|
  Row<double> tiny = 0x1p-200;  // below this the cube would underflow
  // (2 atanh(e/2) - e) / e^3, |e| <= 1/32, to 2^-57.9 of 2 atanh(e/2)
  Row<double> c[3] = {0x1.5555555556a38p-4, 0x1.9999989c2081p-7, 0x1.24ad9cc1c86acp-9};
} constexpr vdatanh_data{};

struct {
  Row<double> one = 1.0;
  Row<double> rounding = 1 + 0x1p-6;           // a product with it and a cut round to six bits
  Row<uint64_t> leading = 0xFFFF800000000000;  // the bits that are left
  Row<double> least = 0x1p-300;                // added to t, so that its square does not underflow
  // (atanh t - t) / t^3, |t| <= 1/64: to 2^-57.9 of atanh t, and to 2^-28.8 of atanh t
  Row<double> la[3] = {0x1.5555555556a38p-2, 0x1.9999989c2081p-3, 0x1.24ad9cc1c86acp-3};
  Row<double> ep[1] = {0x1.555ff05654d7p-2};
} constexpr vdatanh_la_data{};

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
};
struct dAtanhHA : dAtanh {
  static constexpr int kTogether = 2;
  template <class X>
  static X eval(X x) {
    const AtanhReduced<X> f(x);
    const X e = f.e();
    return with_sign_and_underflow_of(f.u.log_ha(e, atanh_rest(f.unless_tiny(e))) * vdatanh_data.half, x);
  }
};
template <bool ep>
struct dAtanhByCells : dAtanh {
  template <class X>
  static X eval(X x) {
    const auto& d = vdatanh_la_data;
    const X size = magnitude(x), difference = d.one - size;
    const X D = bit_and(difference * d.rounding, d.leading);
    const X t = (size - (d.one - D)) / multiply_add(size, D, difference);
    const SpilledWords<X> words(D);
    const X T = gather<X>(kAtanhTable, [&](int lane) { return (words.high(lane) >> 15) - kFirstRow; });
    const X q = t + d.least, q2 = q * q;
    X p;
    if constexpr (ep)
      p = horner(q2, d.ep);
    else
      p = horner(q2, d.la);
    return with_sign_and_underflow_of(multiply_add(t, multiply_add(q2, p, d.one), T), x);
  }

 private:
  static constexpr int kFirstRow = (1023 - 53) << 5;  // 2^-53's exponent and no more
};
using dAtanhLA = dAtanhByCells<false>;
using dAtanhEP = dAtanhByCells<true>;

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, d, Atanh)
