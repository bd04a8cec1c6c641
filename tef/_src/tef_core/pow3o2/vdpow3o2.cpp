// x^(3/2), double.
#include <cfloat>

#include "pow3o2/pow3o2.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<double> half = 0.5;
  Row<double> least = 0x1p-580, largest = 0x1p+680;  // in between nothing overflows or is denormal
  Row<double> up = 0x1p+600, from_up = 0x1p-900, down = 0x1p-600, from_down = 0x1p+900;
} constexpr vdpow3o2_data{};

// HA. What s lacks is d = (x - s^2)/(2 s), to first order, and x d = s (x - s^2)/2: no division. It is added to the
// rounding error of x s.
template <class X>
inline HighLow<X> accurate_power(X x) {
  const X s = square_root(x);
  const auto a = split(x), b = split(s);
  const X p = x * s;
  const X lost = ((a.high * b.high - p) + (a.high * b.low + a.low * b.high)) + a.low * b.low;
  const X rest = ((x - b.high * b.high) - (b.low * b.high + b.low * b.high)) - b.low * b.low;
  return {p, lost + s * vdpow3o2_data.half * rest};
}
template <class X>
inline X sum(const HighLow<X>& y) {
  return y.high + y.low;
}
// y 2^-900. What is denormal then is rounded before, once, to multiples of the least denormal; the product of the plain sum
// raises what belongs to it.
template <class X>
inline X scaled_down(const HighLow<X>& y) {
  const X down = constant<X>(vdpow3o2_data.from_up);
  const X grid = broadcast<X>(0x1p-122), on_grid = grid + y.high;  // its last place is that of 2^(900 - 1074)
  const X rounded = (on_grid + ((y.high - (on_grid - grid)) + y.low)) - grid;
  return select(less(y.high, grid), rounded * down, sum(y) * down);
}

struct dPow3o2HA : Pow3o2<double, RoundedTwice> {
  template <class X>
  static auto rare(X x) {
    return outside(x, vdpow3o2_data.least, vdpow3o2_data.largest);
  }
  template <class X>
  static X eval(X x) {
    return sum(accurate_power(x));
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const auto& d = vdpow3o2_data;
    const X usual = constant<X>(d.half), infinity = broadcast<X>(__builtin_inf());
    left.finish(bit_and(less(X{}, x), less(x, d.least)),
                [&](X small) { return scaled_down(accurate_power(select(small, x, usual) * d.up)); });
    left.finish(bit_and(less(usual, x), less(x, infinity)),
                [&](X large) { return sum(accurate_power(select(large, x, usual) * d.down)) * d.from_down; });
    left.finish(complement(less(x, X{})), [&](X other) { return RoundedTwice::power(bit_and(other, x)); });
    Pow3o2::finish(x, left);
  }
};
using dPow3o2LA = Pow3o2<double, RoundedTwice>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Pow3o2, G9HAynn, dPow3o2HA)
ORX_KERNEL(d, Pow3o2, G9LAynn, dPow3o2LA)
ORX_KERNEL(d, Pow3o2, G9EPnnn, dPow3o2LA)
