// a^b = e^(b ln a).
#pragma once
#include "_complex/elementwise.hpp"
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

template <class Second>
using cPowOf = InVectors<ComplexOfTwo<float, orx_tef_kernel_cpow_scalar, Second>, PowerOfSingle>;

ORX_ISA_END
