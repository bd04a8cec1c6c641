// The abstract stream of integers.
#include "_abstract/abstract.hpp"

using namespace orx::brng;

namespace {
using iAbstract = abstract::Generator<uint32_t>;
}

ORX_BRNG_FUNCTIONS(iAbstract)

ORX_API int __kobiNewAbstractStream(KobStream** stream, int n, uint32_t ibuf[], KobiRefill icallback) {
  return abstract::new_stream<uint32_t>(stream, KOB_BRNG_IABSTRACT, n, ibuf, 0, 0, icallback);
}
