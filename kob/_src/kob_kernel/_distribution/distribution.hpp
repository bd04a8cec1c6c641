// What distribution generators share: the frame that each exported function opens, the block length, the accurate
// mode, uniforms of either precision.
#pragma once

#include <algorithm>

#include "_service/registry.hpp"
#include "_service/stream.hpp"
#include "orx/base/default_arithmetic.hpp"
#include "orx/base/simd/simd.hpp"
#include "vector_math.hpp"

namespace orx::rng {

constexpr int kBlock = 1024;        // numbers in a stack buffer
constexpr int kAccurate = 1 << 30;  // this bit of the method word asks for the accurate mode

// Apart from framed, so that no arithmetic is moved across the change of the control words.
template <auto worker, class... Arguments>
[[gnu::noinline]] int with_vector_math(TefErrorCallBack call_back, Arguments... arguments) {
  const VectorMath math(call_back);
  return worker(math, arguments...);
}

// Runs worker(math, arguments...) in the processor's default arithmetic, so that a caller's rounding mode changes
// no number, with errors of vector math going to call_back.
template <auto worker, class... Arguments>
int framed(TefErrorCallBack call_back, Arguments... arguments) {
  const DefaultArithmetic arithmetic;
  return with_vector_math<worker>(call_back, arguments...);
}

// As the Uniform generators, without the steps that lead there.
inline int uniform(KobStream* stream, int n, double* r, double a = 0, double b = 1) {
  return brng::record(stream).dGenerate(stream, n, r, simd::hidden(a), simd::hidden(b));
}
inline int uniform(KobStream* stream, int n, float* r, float a = 0, float b = 1) {
  return brng::record(stream).sGenerate(stream, n, r, simd::hidden(a), simd::hidden(b));
}

// Exponential with mean 1, and normal numbers.
inline int exponential(KobStream* stream, int n, double* r) {
  return _kobdRngExponential(0, stream, n, r, 0, 1);
}
inline int exponential(KobStream* stream, int n, float* r) {
  return _kobsRngExponential(0, stream, n, r, 0, 1);
}

enum GaussianMethod { kBoxMuller, kBoxMuller2, kIcdf };
inline int gaussian(int method, KobStream* stream, int n, double* r, double a = 0, double sigma = 1) {
  return _kobdRngGaussian(method, stream, n, r, a, sigma);
}
inline int gaussian(int method, KobStream* stream, int n, float* r, float a = 0, float sigma = 1) {
  return _kobsRngGaussian(method, stream, n, r, a, sigma);
}

// The processor's square root, correctly rounded and as fast as a kernel could be.
inline double root(double x) { return __builtin_sqrt(x); }
inline float root(float x) { return __builtin_sqrtf(x); }

// Calls block(first, count) for stretches of at most `most` out of n until one returns a negative status.
template <class Block>
[[gnu::always_inline]] inline int in_blocks(int n, const Block& block, int most = kBlock) {
  for (int done = 0, count; done < n; done += count) {
    count = std::min(n - done, most);
    const int status = block(done, count);
    if (status < 0) return status;
  }
  return KOB_STATUS_OK;
}

// One uniform on [low, high) to each element of r, all of them first; then transform(count, x) on stretches that
// stay in the cache.
template <class Real, class Transform>
[[gnu::always_inline]] inline int transformed_uniforms(KobStream* stream, int n, Real* r, Real low, Real high,
                                                       const Transform& transform) {
  const int status = uniform(stream, n, r, low, high);
  if (status < 0) return status;
  for (int done = 0; done < n; done += kBlock) transform(std::min(n - done, kBlock), r + done);
  return status;
}

}  // namespace orx::rng
