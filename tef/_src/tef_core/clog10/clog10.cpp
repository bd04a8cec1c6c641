// log10 z.
#include "_complex/ln_in_one.hpp"
#include "_complex/ln_in_two.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct {
  Row<double> high = 0x1.bcb7b1526e50ep-2, low = 0x1.95355baaafad3p-57;
} constexpr kLog10E{};

template <class Carried>
struct Log10 {
  template <class X>
  static auto rare(Complex<X> z) {
    return bit_or(not_moderate(z), too_small(z));
  }
  template <class X>
  static auto of(Complex<X> z) {
    const auto ln = ln_of(Carried(), z);
    const auto log10_e = Carried::template constant_of<X>(kLog10E.high, kLog10E.low);
    return complex_of(ln.re * log10_e, ln.im * log10_e);
  }
};

using cLog10 = InSingles<orx_tef_kernel_clog10_scalar, Log10<InOne>>;
using zLog10 = InDoubles<orx_tef_kernel_clog10_scalar, Log10<InTwo>>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(c, Log10, PXHAynn, cLog10)
ORX_KERNEL(z, Log10, PXHAynn, zLog10)
