// n words of 32 uniform bits.
#include "bits.hpp"

using namespace orx::rng;

#define ORX_WORKER(Name, how)                                                               \
  static int _viRngUniformBits32##Name(int method, KobStream* stream, int n, uint32_t* r) { \
    return how<1>(method, stream, n, r);                                                    \
  }
#define ORX_ENTRY(Name, how) _viRngUniformBits32##Name,

extern "C" {
ORX_BITS_WORKERS(ORX_WORKER)
static const Worker Dispatch[] = {ORX_BITS_WORKERS(ORX_ENTRY)};
}

ORX_API int _kobiRngUniformBits32(int method, KobStream* stream, int n, uint32_t r[]) {
  return dispatch(Dispatch, method, stream, n, r);
}
