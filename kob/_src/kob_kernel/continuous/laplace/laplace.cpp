// Laplace: an exponential number to either side of a, which side by a second uniform.
#include "distribution.hpp"

using namespace orx::rng;

ORX_LN_CALL_BACKS(on_any_error)

template <class Real>
static int laplace(const VectorMath& math, KobStream* stream, int n, Real* r, Real a, Real beta) {
  Real u[2 * kBlock];  // of each pair the first is the exponential's, the second chooses the side
  return in_blocks(n, [&](int done, int count) {
    const int status = uniform(stream, 2 * count, u);
    if (status < 0) return status;
    Real* const x = r + done;
    for (int i = 0; i < count; ++i) x[i] = u[2 * i];
    math.ln(count, x, x);
    for (int i = 0; i < count; ++i) x[i] = a + (u[2 * i + 1] > Real(0.5) ? beta : -beta) * x[i];
    return status;
  });
}

ORX_API int _kobdRngLaplace(int, KobStream* stream, int n, double r[], double a, double beta) {
  return framed<laplace<double>>(_vdLnCallBack, stream, n, r, a, beta);
}
ORX_API int _kobsRngLaplace(int, KobStream* stream, int n, float r[], float a, float beta) {
  return framed<laplace<float>>(_vsLnCallBack, stream, n, r, a, beta);
}
