// ln z, c.
#include "atan/vsatan.hpp"
#include "cln/cln.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int cln_ha_scalar(const Complex<float>* a, Complex<float>* r) {
  by_extended<orx_tef_kernel_clog_scalar>(a, r);
  return StatusOk;
}

struct {
  Row<double> half = 0.5, two = 2.0;
} constexpr vcln_data{};

// In double, where squares of singles are exact.
struct cLnReal {
  template <class X>
  static auto usual(Complex<X> z) {
    return complement(bit_or(not_finite(z), is_zero(z)));
  }
  template <class X>
  static X of(Complex<X> z) {
    const auto& d = vcln_data;
    const auto wide = widen(z);
    const auto sum = two_sum(wide.re * wide.re, wide.im * wide.im);
    const auto near_one = complement(outside(sum.high, d.half, d.two));
    return narrow(ln_of_sum_near_one<LnDescription, true>(sum.high, keep(near_one, sum.low)) * d.half);
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
