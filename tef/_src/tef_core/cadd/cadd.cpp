// a + b of complex numbers.
#include "_complex/sum.hpp"

using namespace orx::tef;
using cAddHA = Sum<float, Plus>;
using cAddEP = QuietSum<float, Plus>;
using zAddHA = Sum<double, Plus>;
using zAddEP = QuietSum<double, Plus>;
ORX_KERNEL_OF(binary, c, Add, G9HAynn, cAddHA)
ORX_KERNEL_OF(binary, c, Add, G9EPnnn, cAddEP)
ORX_KERNEL_OF(binary, z, Add, G9HAynn, zAddHA)
ORX_KERNEL_OF(binary, z, Add, G9EPnnn, zAddEP)
