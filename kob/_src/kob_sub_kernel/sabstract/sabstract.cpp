// The abstract stream of singles.
#include "_abstract/abstract.hpp"

using namespace orx::brng;

namespace {
using sAbstract = abstract::Generator<float>;
}

ORX_BRNG_FUNCTIONS(sAbstract)

ORX_API int __kobsNewAbstractStream(KobStream** stream, int n, float sbuf[], float a, float b,
                                    KobsRefill scallback) {
  return abstract::new_stream<float>(stream, KOB_BRNG_SABSTRACT, n, sbuf, a, b, scallback);
}
