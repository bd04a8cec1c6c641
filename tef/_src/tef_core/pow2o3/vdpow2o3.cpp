// x^(2/3), double.
#include "pow2o3/pow2o3.hpp"

using namespace orx::tef;
ORX_KERNEL(d, Pow2o3, G9HAynn, dThirdHA<Pow2o3Power>)
ORX_KERNEL(d, Pow2o3, G9LAynn, dThirdLA<Pow2o3Power>)
ORX_KERNEL(d, Pow2o3, G9EPnnn, dThirdEP<Pow2o3Power>)
