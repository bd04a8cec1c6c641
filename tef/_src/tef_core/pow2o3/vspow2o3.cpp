// x^(2/3), single.
#include "pow2o3/pow2o3.hpp"

using namespace orx::tef;
ORX_KERNEL(s, Pow2o3, G9HAynn, sThirdHA<Pow2o3Power>)
ORX_KERNEL(s, Pow2o3, G9LAynn, sThirdLA<Pow2o3Power>)
ORX_KERNEL(s, Pow2o3, G9EPnnn, sThirdEP<Pow2o3Power>)
