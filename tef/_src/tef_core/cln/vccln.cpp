// ln z, c.
#include "_complex/ln_in_one.hpp"
#include "atan/vsatan.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int cln_ha_scalar(const Complex<float>* a, Complex<float>* r) {
  by_extended<orx_tef_kernel_clog_scalar>(a, r);
  return StatusOk;
}

// In double.
struct cLnReal {
  template <class X>
  static auto usual(Complex<X> z) {
    return complement(bit_or(not_finite(z), is_zero(z)));
  }
  template <class X>
  static X of(Complex<X> z) {
    return narrow(ln_of_modulus<true>(widen(z)));
  }
};

using cLnHA = ComplexLn<float, cLnReal, ArcTangent2<float, sAngleHA>, cln_ha_scalar>;
using cLnLA = ComplexLn<float, cLnReal, ArcTangent2<float, sAngleLA>, cln_ha_scalar>;
using cLnEP = ComplexLn<float, cLnReal, ArcTangent2<float, sAngleEP>, cln_ha_scalar>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(c, Ln, G9HAynn, cLnHA)
ORX_KERNEL(c, Ln, G9LAynn, cLnLA)
ORX_KERNEL(c, Ln, G9EPnnn, cLnEP)
