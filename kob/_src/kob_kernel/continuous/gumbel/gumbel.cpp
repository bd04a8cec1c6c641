// Gumbel: a + beta ln E, E exponential: the law of smallest values.
#include "distribution.hpp"

using namespace orx::rng;

// In single precision an exponential number can be exactly 0.
ORX_LN_CALL_BACKS(on_any_error)

template <class Real>
static int gumbel(const VectorMath& math, KobStream* stream, int n, Real* r, Real a, Real beta) {
  const int status = exponential(stream, n, r);
  if (status < 0) return status;
  return in_blocks(n, [&](int done, int count) {
    Real* const x = r + done;
    math.ln(count, x, x);
    for (int i = 0; i < count; ++i) x[i] = a + beta * x[i];
    return status;
  });
}

ORX_API int _kobdRngGumbel(int, KobStream* stream, int n, double r[], double a, double beta) {
  return framed<gumbel<double>>(_vdLnCallBack, stream, n, r, a, beta);
}
ORX_API int _kobsRngGumbel(int, KobStream* stream, int n, float r[], float a, float beta) {
  return framed<gumbel<float>>(_vsLnCallBack, stream, n, r, a, beta);
}
