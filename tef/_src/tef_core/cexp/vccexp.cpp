// e^z, c.
#include "cexp/cexp.hpp"
#include "exp/vdexp_kernels.hpp"
#include "exp/vsexp_kernels.hpp"
#include "sin/vssincos.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  // e^x times the least sine of a single is beyond the range of singles where x is beyond these.
  Row<double> lowest = -700.0, highest = 700.0;
  Row<float> turns_from = 10000.0f;  // imaginary parts, where multiples of pi do not do
} constexpr vcexp_data{};

// HA: in double.
struct cExpHA : Kernel<Complex<float>(Complex<float>)> {
  template <class X>
  static auto rare(Complex<X> z) {
    return bit_or(not_at_most(magnitude(z.re), kLargestPart<float>),
                  not_below(magnitude(z.im), vcexp_data.turns_from));
  }
  template <class X>
  static Complex<X> eval(Complex<X> z, X& rare) {
    const auto y = moderate(z);
    rare = any_infinite(y);
    return y;
  }
  template <class X, class Left>
  static void finish(Complex<X> z, Left& left) {
    const X finite = bit_andnot(not_finite(z), left.lanes);
    z = {keep(finite, z.re), keep(finite, z.im)};
    const X small = less(magnitude(z.im), vcexp_data.turns_from);
    Complex<X> y = moderate(Complex<X>{z.re, keep(small, z.im)});
    if (any(bit_andnot(small, finite))) y = select(small, y, by_turns(z));
    left.finish(bit_and(finite, any_infinite(y)), y, StatusOverflow);
    left.finish(finite, y);
  }
  static int rare_lane(const Complex<float>* a, Complex<float>* r) { return _tef_cexpt_scalar(a, r); }

 private:
  // The imaginary part is at most moderate.
  template <class X>
  static Complex<X> moderate(Complex<X> z) {
    const auto y = widen(z.im);
    return narrow(
        scaled(power(z.re), Complex<decltype(widen(z.im))>{sine_by_polynomial<true, true>(y, vdsin_data),
                                                           sine_by_polynomial<false, true>(y, vdsin_data)}));
  }
  template <class X>
  static Complex<X> by_turns(Complex<X> z) {
    const auto y = sines_of_large<Wanted::Both>(z.im, [](auto r, auto N) { return sine_of_rest(r, N); });
    return narrow(scaled(power(z.re), Complex<decltype(widen(z.im))>{y.second, y.first}));
  }
  template <class X>
  static auto power(X x) {
    return dExpLA::eval(min(max(widen(x), vcexp_data.lowest), vcexp_data.highest));
  }
};

// LA: in single, where e^x is a normal number.
struct cExpLA : cExpHA {
  template <class X>
  static auto rare(Complex<X> z) {
    return bit_or(sExpLA::rare(z.re), not_below(magnitude(z.im), vcexp_data.turns_from));
  }
  template <class X>
  static Complex<X> eval(Complex<X> z) {
    return scaled(sExpLA::eval(z.re), Complex<X>{sine_by_polynomial<true, false>(z.im, vssin_data),
                                                 sine_by_polynomial<false, false>(z.im, vssin_data)});
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(c, Exp, G9HAynn, cExpHA)
ORX_KERNEL(c, Exp, G9LAynn, cExpLA)
