// Weibull: a + beta (-ln u)^(1/alpha), by inversion.
#include "distribution.hpp"

using namespace orx::rng;

ORX_LN_CALL_BACKS(on_pole)

template <class Real>
static int weibull(const VectorMath& math, KobStream* stream, int n, Real* r, Real alpha, Real a, Real beta) {
  const Real exponent = 1 / alpha;
  return transformed_uniforms<Real>(stream, n, r, 0, 1, [&](int count, Real* x) {
    math.ln(count, x, x);
    for (int i = 0; i < count; ++i) x[i] = 0 - x[i];
    math.power(count, x, exponent, x);
    for (int i = 0; i < count; ++i) x[i] = std::max(a, a + beta * x[i]);
  });
}

ORX_API int _kobdRngWeibull(int, KobStream* stream, int n, double r[], double alpha, double a, double beta) {
  return framed<weibull<double>>(_vdLnCallBack, stream, n, r, alpha, a, beta);
}
ORX_API int _kobsRngWeibull(int, KobStream* stream, int n, float r[], float alpha, float a, float beta) {
  return framed<weibull<float>>(_vsLnCallBack, stream, n, r, alpha, a, beta);
}
