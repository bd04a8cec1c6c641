// log10 z.
#include "_complex/elementwise.hpp"
#include "_complex/ln_in_two.hpp"
#include "cln/cln_of_single.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct Log10OfSingle {
  template <class X>
  static auto rare(Complex<X> z) {
    return bit_or(not_moderate(z), is_zero(z));
  }
  template <class X>
  static Complex<X> eval(Complex<X> z) {
    static constexpr Row<double> log10_e = 0x1.bcb7b1526e50ep-2;
    const auto ln = ln_of_single(widen(z));
    return narrow(Complex<decltype(ln.re)>{ln.re * log10_e, ln.im * log10_e});
  }
};

struct {
  Row<double> hi = 0x1.bcb7b1526e50ep-2, lo = 0x1.95355baaafad3p-57;
} constexpr kLog10E{};

struct Log10OfDouble {
  template <class X>
  static auto rare(Complex<X> z) {
    return bit_or(not_moderate(z), is_zero(z));
  }
  template <class X>
  static Complex<X> eval(Complex<X> z) {
    const HighLow<X> log10_e{constant<X>(kLog10E.hi), constant<X>(kLog10E.lo)};
    const auto ln = ln_in_two(z);
    return {rounded_sum(ln.re * log10_e), rounded_sum(ln.im * log10_e)};
  }
};

using cLog10 = InVectors<ComplexOfOne<float, orx_tef_kernel_clog10_scalar>, Log10OfSingle>;
using zLog10 = InVectors<ComplexOfOne<double, orx_tef_kernel_clog10_scalar>, Log10OfDouble>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(c, Log10, PXHAynn, cLog10)
ORX_KERNEL(z, Log10, PXHAynn, zLog10)
