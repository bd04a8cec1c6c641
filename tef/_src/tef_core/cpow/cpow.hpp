// a^b = e^(b ln a).
#pragma once
#include "_complex/elementwise.hpp"
#include "_complex/ln_in_two.hpp"
#include "cln/cln_of_single.hpp"
#include "exp/vdexp_kernels.hpp"
#include "sin/vdsincos.hpp"

ORX_ISA_BEGIN(orx::tef)

// Of singles, in doubles. The error of the logarithm, 2^-50 or so, grows by the factor |b|, that of the product by its
// size.
struct PowerOfSingle {
  template <class X>
  static auto rare(Complex<X> a, Complex<X> b) {
    return bit_or(bit_or(not_moderate(a), not_moderate(b)), is_zero(a));
  }
  template <class X>
  static Complex<X> eval(Complex<X> a, Complex<X> b, X& rare) {
    // |b ln a| in the sense of the product's terms; and where the result is as a rule no normal number.
    static constexpr Row<double> large = 0x1p12, rare_from = 87.0;
    const auto ln = ln_of_single(widen(a)), by = widen(b);
    const auto size = (magnitude(by.re) + magnitude(by.im)) * (magnitude(ln.re) + magnitude(ln.im));
    const auto x = by.re * ln.re - by.im * ln.im, y = by.re * ln.im + by.im * ln.re;
    const auto late = bit_or(not_below(size, large), not_below(magnitude(x), rare_from));
    rare = narrow(late);
    const auto angle = bit_andnot(late, y);
    return narrow(
        scaled(dExpLA::eval(bit_andnot(late, x)),
               Complex<decltype(widen(a.re))>{sine_by_polynomial<true, false>(angle, vdsin_data),
                                              sine_by_polynomial<false, false>(angle, vdsin_data)}));
  }
};

// Of doubles, in numbers in two parts: 2^10 times the error of the logarithm is next to nothing.
struct PowerOfDouble {
  template <class X>
  static auto rare(Complex<X> a, Complex<X> b) {
    return bit_or(bit_or(not_moderate(a), not_moderate(b)), is_zero(a));
  }
  template <class X>
  static Complex<X> eval(Complex<X> a, Complex<X> b, X& rare) {
    static constexpr Row<double> large = 0x1p10, rare_from = 650.0;
    const auto ln = ln_in_two(a);
    const auto x = ln.re * b.re - ln.im * b.im, y = ln.im * b.re + ln.re * b.im;
    const X size = (magnitude(b.re) + magnitude(b.im)) * (magnitude(ln.re.high) + magnitude(ln.im.high));
    rare = bit_or(not_below(size, large), not_below(magnitude(x.high), rare_from));
    const auto usual = [&](HighLow<X> part) {
      return HighLow<X>{bit_andnot(rare, part.high), bit_andnot(rare, part.low)};
    };
    return power(usual(x), usual(y));
  }

 private:
  // e^(x + iy).
  template <class X>
  static Complex<X> power(HighLow<X> x, HighLow<X> y) {
    const auto e = exp_parts_of_two(x, x.high);
    const auto size = fast_two_sum(e.T, e.T * e.rest);
    const auto turn = turn_of_sum(magnitude(y));
    const SmallSineCosine<X> f(turn);
    const SpilledWords<X> n(turn.N);
    const auto part = [&](HighLow<X> wave) { return rounded_sum(size * normalised(wave)) * e.scale; };
    return {part(sine_parts<128>(turn, f, n)), part(turned_by(sine_parts<0>(turn, f, n), y.high))};
  }
  template <class X>
  static Turn<X> turn_of_sum(HighLow<X> angle) {
    auto turn = reduce_by_table_steps(angle.high);
    const auto rest = two_sum(turn.r, angle.low);
    turn.r = turn.q = rest.high;
    turn.r_lo = turn.r_lo + rest.low;
    return turn;
  }
};

template <class Second>
using cPowOf = InVectors<ComplexOfTwo<float, orx_tef_kernel_cpow_scalar, Second>, PowerOfSingle>;
template <class Second>
using zPowOf = InVectors<ComplexOfTwo<double, orx_tef_kernel_cpow_scalar, Second>, PowerOfDouble>;

ORX_ISA_END
