// a times the conjugate of b.
#include "_complex/product.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int vcmulbyconj_cout_rare(const Complex<float>* a, const Complex<float>* b, Complex<float>* r) {
  return rare_product<TimesConjugate>(a, b, r);
}
int vzmulbyconj_cout_rare(const Complex<double>* a, const Complex<double>* b, Complex<double>* r) {
  return rare_product<TimesConjugate>(a, b, r);
}

using cMulByConjHA = Product<float, TimesConjugate, vcmulbyconj_cout_rare>;
using cMulByConjEP = QuietProduct<float, TimesConjugate>;
using zMulByConjHA = Product<double, TimesConjugate, vzmulbyconj_cout_rare>;
using zMulByConjEP = QuietProduct<double, TimesConjugate>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(binary, c, MulByConj, G9HAynn, cMulByConjHA)
ORX_KERNEL_OF(binary, c, MulByConj, G9EPnnn, cMulByConjEP)
ORX_KERNEL_OF(binary, z, MulByConj, G9HAynn, zMulByConjHA)
ORX_KERNEL_OF(binary, z, MulByConj, G9EPnnn, zMulByConjEP)
