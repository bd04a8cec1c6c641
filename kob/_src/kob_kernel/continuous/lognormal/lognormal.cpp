// Lognormal: b + beta e^x, x normal.
#include "distribution.hpp"

using namespace orx::rng;

// e^x may overflow: it is infinity then, and no error.
static int _vCallBack(TefErrorContext*) { return 0; }

template <class Real>
static int lognormal(const VectorMath& math, int method, KobStream* stream, int n, Real* r, Real a,
                     Real sigma, Real b, Real beta) {
  const int status = gaussian(method ? kIcdf : kBoxMuller2, stream, n, r, a, sigma);
  if (status < 0) return status;
  return in_blocks(n, [&](int done, int count) {
    Real* const x = r + done;
    math.exp(count, x, x);
    for (int i = 0; i < count; ++i) x[i] = std::max(b, b + beta * x[i]);
    return status;
  });
}

ORX_API int _kobdRngLognormal(int method, KobStream* stream, int n, double r[], double a, double sigma,
                              double b, double beta) {
  return framed<lognormal<double>>(_vCallBack, method, stream, n, r, a, sigma, b, beta);
}
ORX_API int _kobsRngLognormal(int method, KobStream* stream, int n, float r[], float a, float sigma, float b,
                              float beta) {
  return framed<lognormal<float>>(_vCallBack, method, stream, n, r, a, sigma, b, beta);
}
