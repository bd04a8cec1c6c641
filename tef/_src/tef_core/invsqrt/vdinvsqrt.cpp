// x^(-1/2), double. HA, EP: x = 2^2k m, 1/2 <= m < 2. y, the processor's approximate reciprocal root of m, leaves
// e = 1 - m y^2, and m^(-1/2) = y (1 - e)^(-1/2), the binomial series.
#include "invsqrt/invsqrt.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<uint64_t> fraction = 0x001FFFFFFFFFFFFF,
                exponent = 0x3FE0000000000000;  // that of m: its last bit is x's
  Row<uint64_t> exponent_field = 0x7FF0000000000000;
  Row<uint64_t> short_y = 0xFFFFFF0000000000;  // 13 leading bits: y^2 times the half of a double is exact
  Row<double> one = 1.0;
  // ((1 - e)^(-1/2) - 1) / e; |e| <= 2^-9.6, to 2^-64.4 of the root, and |e| <= 2^-10.4 to 2^-34.8 of the root
  Row<double> ha[5] = {0x1p-1, 0x1.7ffffffffed25p-2, 0x1.3ffffffffecbfp-2, 0x1.180022fff960ap-2,
                       0x1.f80042e268692p-3};
  Row<double> ep[2] = {0x1.0000044eb3b8cp-1, 0x1.8000089d73f3bp-2};
} constexpr vdinvsqrt_data{};

template <class X>
inline X even_fraction(X x) {
  return bit_or(bit_and(x, vdinvsqrt_data.fraction), vdinvsqrt_data.exponent);
}
// 2^-k. Half of x's bits, as an integer, hold half of the exponent.
template <class X>
inline X scale_of_root(X x) {
  constexpr uint64_t above = (uint64_t{1535} << 52) - 1;
  return bit_and(reals<X>(above - shift_right<1>(bits(x))), vdinvsqrt_data.exponent_field);
}

// HA: y is short, so that e is exact but for the last sum.
struct Accurate {
  template <class X>
  static X root(X x) {
    const auto& d = vdinvsqrt_data;
    const auto m = split(even_fraction(x));
    const X y = bit_and(approximate_reciprocal_root(m.high), d.short_y), y2 = y * y;
    const X e = (d.one - m.high * y2) - m.low * y2;
    return (y + y * (e * polynomial(e, e * e, d.ha))) * scale_of_root(x);
  }
};
// LA: two roundings, as quick as any approximation.
struct Plain {
  template <class X>
  static X root(X x) {
    return vdinvsqrt_data.one / square_root(x);
  }
};
struct Rough {
  template <class X>
  static X root(X x) {
    const auto& d = vdinvsqrt_data;
    const X m = even_fraction(x);
    const X y = approximate_reciprocal_root(m);
    const X e = d.one - (m * y) * y;
    return (y + y * (e * horner(e, d.ep))) * scale_of_root(x);
  }
};

using dInvSqrtHA = InvSqrt<double, Accurate>;
using dInvSqrtLA = InvSqrt<double, Plain>;
using dInvSqrtEP = InvSqrt<double, Rough>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, InvSqrt, G9HAynn, dInvSqrtHA)
ORX_KERNEL(d, InvSqrt, G9LAynn, dInvSqrtLA)
ORX_KERNEL(d, InvSqrt, G9EPnnn, dInvSqrtEP)
