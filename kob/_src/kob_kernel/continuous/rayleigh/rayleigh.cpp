// Rayleigh: a + beta sqrt(-ln u), by inversion. There is no factor 2 below the root.
#include "distribution.hpp"

using namespace orx::rng;

ORX_LN_CALL_BACKS(on_pole)

template <class Real>
static int rayleigh(const VectorMath& math, KobStream* stream, int n, Real* r, Real a, Real beta) {
  return transformed_uniforms<Real>(stream, n, r, 0, 1, [&](int count, Real* x) {
    math.ln(count, x, x);
    for (int i = 0; i < count; ++i) x[i] = std::max(a, a + beta * root(0 - x[i]));
  });
}

ORX_API int _kobdRngRayleigh(int, KobStream* stream, int n, double r[], double a, double beta) {
  return framed<rayleigh<double>>(_vdLnCallBack, stream, n, r, a, beta);
}
ORX_API int _kobsRngRayleigh(int, KobStream* stream, int n, float r[], float a, float beta) {
  return framed<rayleigh<float>>(_vsLnCallBack, stream, n, r, a, beta);
}
