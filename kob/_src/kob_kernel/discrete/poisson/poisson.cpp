// Poisson numbers of one mean.
#include "ptpe.hpp"

using namespace orx::rng;

static int _vsLnCallBack(TefErrorContext* error) { return on_any_error<float>(error); }

static int _viRngPoissonPtpe(const VectorMath& math, KobStream* stream, int n, int32_t* r, double mean) {
  return poisson::ptpe(math, stream, n, r, mean);
}

ORX_API int _kobiRngPoisson(int method, KobStream* stream, int n, int32_t r[], double mean) {
  static constexpr decltype(&_viRngPoissonPtpe) Dispatch[] = {_viRngPoissonPtpe};
  const uint32_t index = uint32_t(method & ~kAccurate);
  if (index >= sizeof Dispatch / sizeof *Dispatch) return KOB_ERROR_METHOD;
  return framed(_vsLnCallBack, Dispatch[index], stream, n, r, mean);
}
