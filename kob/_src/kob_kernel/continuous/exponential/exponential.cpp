// Exponential: a - beta ln u, by inversion.
#include "distribution.hpp"

using namespace orx::rng;

ORX_LN_CALL_BACKS(on_any_error)

template <class Real>
static int exponential(const VectorMath& math, KobStream* stream, int n, Real* r, Real a, Real beta) {
  return transformed_uniforms<Real>(stream, n, r, 0, 1, [&](int count, Real* x) {
    math.ln(count, x, x);
    // Never below a, though the logarithm may be rounded to a positive number.
    for (int i = 0; i < count; ++i) x[i] = std::max(a, a - beta * x[i]);
  });
}

ORX_API int _kobdRngExponential(int, KobStream* stream, int n, double r[], double a, double beta) {
  return framed<exponential<double>>(_vdLnCallBack, stream, n, r, a, beta);
}
ORX_API int _kobsRngExponential(int, KobStream* stream, int n, float r[], float a, float beta) {
  return framed<exponential<float>>(_vsLnCallBack, stream, n, r, a, beta);
}
