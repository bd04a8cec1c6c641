// Cauchy: a + beta tan x, x uniform on [-pi/2, pi/2).
#include "distribution.hpp"

using namespace orx::rng;

template <class Real>
static int cauchy(const VectorMath& math, KobStream* stream, int n, Real* r, Real a, Real beta) {
  constexpr Real half_pi = Real(0x1.921fb54442d18p+0);
  return transformed_uniforms<Real>(stream, n, r, -half_pi, half_pi, [&](int count, Real* x) {
    math.tan(count, x, x);
    for (int i = 0; i < count; ++i) x[i] = a + beta * x[i];
  });
}

ORX_API int _kobdRngCauchy(int, KobStream* stream, int n, double r[], double a, double beta) {
  return framed<cauchy<double>>(nullptr, stream, n, r, a, beta);
}
ORX_API int _kobsRngCauchy(int, KobStream* stream, int n, float r[], float a, float beta) {
  return framed<cauchy<float>>(nullptr, stream, n, r, a, beta);
}
