// a b.
#include "_complex/product.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int vcmul_cout_rare(const Complex<float>* a, const Complex<float>* b, Complex<float>* r) {
  return rare_product<Times>(a, b, r);
}
int vzmul_cout_rare(const Complex<double>* a, const Complex<double>* b, Complex<double>* r) {
  return rare_product<Times>(a, b, r);
}

using cMulHA = Product<float, Times, vcmul_cout_rare>;
using cMulEP = QuietProduct<float, Times>;
using zMulHA = Product<double, Times, vzmul_cout_rare>;
using zMulEP = QuietProduct<double, Times>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(binary, c, Mul, G9HAynn, cMulHA)
ORX_KERNEL_OF(binary, c, Mul, G9EPnnn, cMulEP)
ORX_KERNEL_OF(binary, z, Mul, G9HAynn, zMulHA)
ORX_KERNEL_OF(binary, z, Mul, G9EPnnn, zMulEP)
