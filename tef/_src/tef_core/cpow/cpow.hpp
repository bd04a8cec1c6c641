// a^b = e^(b ln a).
#pragma once
#include "_complex/ln_in_one.hpp"
#include "_complex/ln_in_two.hpp"
#include "exp/vdexp_kernels.hpp"
#include "sin/vdsincos.hpp"

ORX_ISA_BEGIN(orx::tef)

// Of singles, in doubles. The error of the logarithm, 2^-50 or so, grows by the factor |b|, that of the product by its
// size.
struct PowerOfSingle {
  using Carried = InOne;
  // |b ln a| in the sense of the product's terms; and where the result is as a rule no normal number.
  static constexpr Row<double> kLarge = 0x1p12, kRareFrom = 87.0;

  // e^(x + iy).
  template <class X>
  static Complex<X> exponential(X x, X y) {
    const auto wave = dSinLA<Wanted::Both>::eval(y);
    return scaled(dExpLA::eval(x), Complex<X>{wave.second, wave.first});
  }
};

// Of doubles, in numbers in two parts: 2^10 times the error of the logarithm is next to nothing.
struct PowerOfDouble {
  using Carried = InTwo;
  static constexpr Row<double> kLarge = 0x1p10, kRareFrom = 650.0;

  template <class X>
  static Complex<X> exponential(HighLow<X> x, HighLow<X> y) {
    const auto e = exp_parts_of_two(x, x.high);
    const auto size = fast_two_sum(e.T, e.T * e.rest);
    const auto turn = turn_of_sum(magnitude(y));
    const SmallSineCosine<X> f(turn);
    const SpilledWords<X> n(turn.N);
    const auto part = [&](HighLow<X> wave) { return rounded_sum(size * normalised(wave)) * e.scale; };
    return {part(sine_parts<128>(turn, f, n)), part(turned_by(sine_parts<0>(turn, f, n), y.high))};
  }

 private:
  template <class X>
  static Turn<X> turn_of_sum(HighLow<X> angle) {
    auto turn = reduce_by_table_steps(angle.high);
    const auto rest = two_sum(turn.r, angle.low);
    turn.r = turn.q = rest.high;
    turn.r_lo = turn.r_lo + rest.low;
    return turn;
  }
};

template <class Of>
struct Power {
  template <class X>
  static auto rare(Complex<X> a, Complex<X> b) {
    return bit_or(bit_or(not_moderate(a), not_moderate(b)), too_small(a));
  }
  template <class X>
  static Complex<X> eval(Complex<X> a, Complex<X> b, X& rare) {
    using Carried = typename Of::Carried;
    const auto by = Carried::widened(b);
    const auto ln = ln_of(Carried(), Carried::widened(a));
    const auto x = ln.re * by.re - ln.im * by.im, y = ln.im * by.re + ln.re * by.im;
    const auto size =
        (magnitude(by.re) + magnitude(by.im)) * (magnitude(high_part(ln.re)) + magnitude(high_part(ln.im)));
    const auto late = bit_or(not_below(size, Of::kLarge), not_below(magnitude(high_part(x)), Of::kRareFrom));
    rare = Carried::narrowed(late);
    return Carried::narrowed(Of::exponential(bit_andnot(late, x), bit_andnot(late, y)));
  }
};

template <class Second>
using cPowOf = InVectors<ComplexOfTwo<float, orx_tef_kernel_cpow_scalar, Second>, Power<PowerOfSingle>>;
template <class Second>
using zPowOf = InVectors<ComplexOfTwo<double, orx_tef_kernel_cpow_scalar, Second>, Power<PowerOfDouble>>;

ORX_ISA_END
