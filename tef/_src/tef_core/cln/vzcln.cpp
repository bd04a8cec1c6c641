// ln z, z.
#include "atan/vdatan.hpp"
#include "cln/cln.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int zln_scalar(const Complex<double>* a, Complex<double>* r) {
  by_extended<orx_tef_kernel_clog_scalar>(a, r);
  return StatusOk;
}

struct {
  Row<double> half = 0.5, two = 2.0, one = 1.0, near_one_from = 0x1.6ap-1;
  Row<double> lowest = 0x1p-60, highest = 0x1p+60;  // of the larger part
  Row<double> least = 0x1p-400;                     // of the smaller one, if it is not 0
} constexpr vzln_data{};

template <class X>
inline auto usual_of_doubles(Complex<X> z) {
  const auto& d = vzln_data;
  const X x = magnitude(z.re), y = magnitude(z.im);
  const auto small = [&](X part) { return bit_and(less(part, d.least), not_equal(part, X{})); };
  return bit_andnot(bit_or(bit_or(not_at_most(x, d.highest), not_at_most(y, d.highest)),
                           bit_or(bit_and(less(x, d.lowest), less(y, d.lowest)), bit_or(small(x), small(y)))),
                    broadcast_bits<X>(~uint64_t{0}));
}

// HA: each part is right near |z| = 1, too.
struct zLnRealHA {
  template <class X>
  static auto usual(Complex<X> z) {
    return usual_of_doubles(z);
  }
  template <class X>
  static X of(Complex<X> z) {
    const SquareOfModulus<X> square(z);
    return ln_of_sum<LnDescription>(square.high, square.rest) * vzln_data.half;
  }
};

// LA and EP: near |z| = 1 by (a - 1)(a + 1) + b^2, whose error is small beside |ln z|, for larger parts a from the root of
// 1/2 on: below it that term would be larger than the sum, and the angle is no smaller than 1/2 where |z| is near 1.
template <bool ep>
struct zLnRealLA : zLnRealHA {
  template <class X>
  static X of(Complex<X> z) {
    const auto& d = vzln_data;
    const X x = magnitude(z.re), y = magnitude(z.im), a = max(x, y), b = min(x, y);
    const auto near_one = complement(outside(a, d.near_one_from, d.two));
    const X base = keep(near_one, constant<X>(d.one));
    const X rest = (a - base) * (a + base) + b * b, sum = base + rest;
    return ln_of_sum_near_one<LnDescription, ep>(sum, rest - (sum - base)) * d.half;
  }
};

using zLnHA = ComplexLn<double, zLnRealHA, ArcTangent2<double, dAngleHA>, zln_scalar>;
using zLnLA = ComplexLn<double, zLnRealLA<false>, ArcTangent2<double, dAngleLA>, zln_scalar>;
using zLnEP = ComplexLn<double, zLnRealLA<true>, ArcTangent2<double, dAngleEP>, zln_scalar>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(z, Ln, G9HAynn, zLnHA)
ORX_KERNEL(z, Ln, G9LAynn, zLnLA)
ORX_KERNEL(z, Ln, G9EPnnn, zLnEP)
