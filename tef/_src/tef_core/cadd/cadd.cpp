// a + b of complex numbers.
#include "_complex/sum.hpp"

using namespace orx::tef;
using cAddHA = ComplexSum<float, Plus>;
using cAddEP = QuietComplexSum<float, Plus>;
using zAddHA = ComplexSum<double, Plus>;
using zAddEP = QuietComplexSum<double, Plus>;
ORX_KERNEL_OF(binary, c, Add, G9HAynn, cAddHA)
ORX_KERNEL_OF(binary, c, Add, G9EPnnn, cAddEP)
ORX_KERNEL_OF(binary, z, Add, G9HAynn, zAddHA)
ORX_KERNEL_OF(binary, z, Add, G9EPnnn, zAddEP)
