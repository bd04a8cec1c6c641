// Uniform reals on [a, b): the generator's own conversion, kept inside the interval when asked.
#include "_service/interval.hpp"
#include "_service/registry.hpp"
#include "distribution.hpp"

namespace {

using namespace orx::rng;

int generate(KobStream* stream, int n, double* r, double a, double b) {
  return orx::brng::record(stream).dGenerate(stream, n, r, a, b);
}
int generate(KobStream* stream, int n, float* r, float a, float b) {
  return orx::brng::record(stream).sGenerate(stream, n, r, a, b);
}

// a + (b - a) u is rounded, so that it can come out as b, or beyond an end by a last bit.
template <class Real>
int clamped(KobStream* stream, int n, Real* r, Real a, Real b) {
  const int status = generate(stream, n, r, a, b);
  if (status >= 0)
    for (int i = 0; i < n; ++i) r[i] = std::min(b, std::max(a, r[i]));
  return status;
}

// The generator sees to its own arithmetic.
template <class Real>
int uniforms(int method, KobStream* stream, int n, Real* r, Real a, Real b) {
  if (!(method & kAccurate)) return generate(stream, n, r, a, b);
  return orx::in_default_arithmetic([=] { return clamped(stream, n, r, a, b); });
}

}  // namespace

ORX_API int _kobdRngUniform(int method, KobStream* stream, int n, double r[], double a, double b) {
  return uniforms(method, stream, n, r, orx::brng::argument_value(a), orx::brng::argument_value(b));
}
ORX_API int _kobsRngUniform(int method, KobStream* stream, int n, float r[], float a, float b) {
  return uniforms(method, stream, n, r, orx::brng::argument_value(a), orx::brng::argument_value(b));
}
