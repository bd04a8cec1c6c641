// The abstract stream of doubles.
#include "_abstract/abstract.hpp"

using namespace orx::brng;

namespace {
using dAbstract = abstract::Generator<double>;
}

ORX_BRNG_FUNCTIONS(dAbstract)

ORX_API int __kobdNewAbstractStream(KobStream** stream, int n, double dbuf[], double a, double b,
                                    KobdRefill dcallback) {
  return abstract::new_stream<double>(stream, KOB_BRNG_DABSTRACT, n, dbuf, a, b, dcallback);
}
