// a - b of complex numbers.
#include "_complex/sum.hpp"

using namespace orx::tef;
using cSubHA = ComplexSum<float, Minus>;
using cSubEP = QuietComplexSum<float, Minus>;
using zSubHA = ComplexSum<double, Minus>;
using zSubEP = QuietComplexSum<double, Minus>;
ORX_KERNEL_OF(binary, c, Sub, G9HAynn, cSubHA)
ORX_KERNEL_OF(binary, c, Sub, G9EPnnn, cSubEP)
ORX_KERNEL_OF(binary, z, Sub, G9HAynn, zSubHA)
ORX_KERNEL_OF(binary, z, Sub, G9EPnnn, zSubEP)
