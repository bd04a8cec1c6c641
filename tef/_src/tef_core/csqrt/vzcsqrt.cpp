// The square root, z.
#include "_complex/exact.hpp"
#include "csqrt/csqrt.hpp"
#include "hypot/vdhypot.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

// For parts neither 0 nor of moderate size, and infinite ones.
int csqrt_spec(const Complex<double>* a, Complex<double>* r) {
  by_extended<orx_tef_kernel_csqrt_scalar>(a, r);
  return StatusOk;
}

struct {
  Row<double> half = 0.5, two = 2.0;
  Row<double> least = 0x1p-100, largest = 0x1p+100;
} constexpr vzsqrt_data{};

// The root of high + low in two parts, and what inverts twice the root.
template <class X>
struct RootInTwoParts {
  X high, low, inverse;
  RootInTwoParts(X square, X rest) : high(square_root(square)), inverse(vzsqrt_data.half / high) {
    const X back = high * high;
    low = (((square - back) - lost_in_square(high, back)) + rest) * inverse;
  }
};

// One rounding in each part, of sums in two parts.
struct zSqrtHA : Kernel<Complex<double>(Complex<double>)> {
  template <class X>
  static auto rare(Complex<X> z) {
    return bit_or(bit_or(extreme(z.re), extreme(z.im)), is_zero(z));
  }
  template <class X>
  static Complex<X> eval(Complex<X> z) {
    const auto& d = vzsqrt_data;
    const X x = magnitude(z.re), y = magnitude(z.im), a = max(x, y), b = min(x, y);

    // 1. The modulus.
    const X a2 = a * a, b2 = b * b;
    const auto square = fast_two_sum(a2, b2);
    const RootInTwoParts<X> modulus(square.high,
                                    square.low + (lost_in_square(a, a2) + lost_in_square(b, b2)));

    // 2. t, the root of half its sum with |x|.
    const auto sum = fast_two_sum(modulus.high, x);
    const RootInTwoParts<X> t(sum.high * d.half, (sum.low + modulus.low) * d.half);

    // 3. y/(2 t), corrected by the remainder.
    const Factor<X> q(y * t.inverse), divisor(t.high * d.two);
    const X back = q.value * divisor.value;
    const X remainder = ((y - back) - lost_in_product(q, divisor, back)) - q.value * (t.low * d.two);
    return root_of(z, {t.high + t.low, q.value + remainder * t.inverse});
  }
  template <class X, class Left>
  static void finish(Complex<X> z, Left& left) {
    finish_root_of_zero(z, left);
  }
  static int rare_lane(const Complex<double>* a, Complex<double>* r) { return csqrt_spec(a, r); }

 private:
  template <class X>
  static auto extreme(X x) {
    return bit_and(outside(magnitude(x), vzsqrt_data.least, vzsqrt_data.largest), not_equal(x, X{}));
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(z, Sqrt, G9HAynn, zSqrtHA)
