// The argument of a complex number: the angle of the point, by the kernels of Atan2.
#include "_complex/of_parts.hpp"
#include "atan/vdatan.hpp"
#include "atan/vsatan.hpp"
#include "atan2/atan2.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {
template <class T, class Method>
using Argument = OfParts<ArcTangent2<T, Method>, true>;
using cArgHA = Argument<float, sAngleHA>;
using cArgLA = Argument<float, sAngleLA>;
using cArgEP = Argument<float, sAngleEP>;
using zArgHA = Argument<double, dAngleHA>;
using zArgLA = Argument<double, dAngleLA>;
using zArgEP = Argument<double, dAngleEP>;
}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(c, Arg, G9HAynn, cArgHA)
ORX_KERNEL(c, Arg, G9LAynn, cArgLA)
ORX_KERNEL(c, Arg, G9EPnnn, cArgEP)
ORX_KERNEL(z, Arg, G9HAynn, zArgHA)
ORX_KERNEL(z, Arg, G9LAynn, zArgLA)
ORX_KERNEL(z, Arg, G9EPnnn, zArgEP)
