// e^z, z.
#include "_complex/exact.hpp"
#include "cexp/cexp.hpp"
#include "exp/vdexp_kernels.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

// The scalar routine of both classes, where a part of the result may not be a normal number.
int vzexp_cout_rare(const Complex<double>* a, Complex<double>* r) { return _tef_cexpt_scalar(a, r); }

struct {
  Row<double> turns_from = 0x1.fff8p+15;
  // HA: neither part is rounded twice, as a denormal one would be, for e^x from 2^-476 on times a sine of 2^-540.
  Row<double> lowest = -330.0, highest = 0x1.6232bp+9, least = 0x1p-540;
} constexpr vzexp_data{};

// HA. e^x and the sine are carried in two parts each up to the last sum.
struct zExpHA : Kernel<Complex<double>(Complex<double>)> {
  template <class X>
  static auto rare(Complex<X> z) {
    const X y = magnitude(z.im);
    return bit_or(extreme(z.re), bit_or(not_below(y, vzexp_data.turns_from), tiny(y)));
  }
  template <class X>
  static Complex<X> eval(Complex<X> z) {
    return product(z, reduce_by_table_steps(magnitude(z.im)));
  }
  template <class X, class Left>
  static void finish(Complex<X> z, Left& left) {
    const X y = magnitude(z.im);
    X far = bit_andnot(bit_or(extreme(z.re), less(y, vzexp_data.turns_from)), left.lanes);
    far = bit_and(far, at_most(y, kLargestPart<double>));
    left.finish(far, [&](X which) {
      const X one = broadcast<X>(1);
      return product(Complex<X>{keep(which, z.re), z.im}, reduce_by_digits(select(which, y, one + one)));
    });
  }
  static int rare_lane(const Complex<double>* a, Complex<double>* r) { return vzexp_cout_rare(a, r); }

 private:
  template <class X>
  static auto extreme(X x) {
    return outside(x, vzexp_data.lowest, vzexp_data.highest);
  }
  // Neither 0 nor far enough from it.
  template <class X>
  static auto tiny(X y) {
    return bit_and(less(y, vzexp_data.least), not_equal(y, X{}));
  }
  // y is |z.im|, reduced.
  template <class X>
  static Complex<X> product(Complex<X> z, const Turn<X>& y) {
    const SmallSineCosine<X> f(y);
    const SpilledWords<X> n(y.N);
    const auto e = dExpHA::parts<0>(z.re);
    const auto power = fast_two_sum(e.T, e.T * e.rest);
    const Factor<X> high(power.high);
    const auto times = [&](HighLow<X> part) {
      const auto sine = fast_two_sum(part.high, part.low);
      const X p = high.value * sine.high;
      const X rest = lost_in_product(high, Factor<X>(sine.high), p);
      return (p + (rest + (high.value * sine.low + power.low * sine.high))) * e.scale;
    };
    const X sign = bit_and(z.im, broadcast_bits<X>(kSignBit<double>));
    return {times(sine_parts<128>(y, f, n)), bit_xor(times(sine_parts<0>(y, f, n)), sign)};
  }
};

// LA: the errors of sine and power add up, so that the power is that of HA.
struct zExpLA : zExpHA {
  template <class X>
  static auto rare(Complex<X> z) {
    return bit_or(dExp::rare(z.re), dSinLA<Wanted::Both>::rare(z.im));
  }
  template <class X>
  static Complex<X> eval(Complex<X> z) {
    const auto wave = dSinLA<Wanted::Both>::eval(z.im);
    return scaled(dExpHA::eval(z.re), Complex<X>{wave.second, wave.first});
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(z, Exp, G9HAynn, zExpHA)
ORX_KERNEL(z, Exp, G9LAynn, zExpLA)
