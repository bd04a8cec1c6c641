// a - b of complex numbers.
#include "_complex/sum.hpp"

using namespace orx::tef;
using cSubHA = Sum<float, Minus>;
using cSubEP = QuietSum<float, Minus>;
using zSubHA = Sum<double, Minus>;
using zSubEP = QuietSum<double, Minus>;
ORX_KERNEL_OF(binary, c, Sub, G9HAynn, cSubHA)
ORX_KERNEL_OF(binary, c, Sub, G9EPnnn, cSubEP)
ORX_KERNEL_OF(binary, z, Sub, G9HAynn, zSubHA)
ORX_KERNEL_OF(binary, z, Sub, G9EPnnn, zSubEP)
