// What distribution generators share: the frame that each exported function opens, the block length, the accurate
// mode, uniforms of either precision.
#pragma once

#include <algorithm>

#include "_service/interval.hpp"
#include "_service/registry.hpp"
#include "_service/stream.hpp"
#include "orx/base/bits.hpp"
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

// Whether a number's products with what is of usual size are no denormals, which the caller may have flushed. To a
// comparison they may be 0 already: the bits tell.
inline bool is_zero(float x) { return bit_cast<uint32_t>(x) << 1 == 0; }
inline bool is_zero(double x) { return bit_cast<uint64_t>(x) << 1 == 0; }
template <class Real>
bool is_far_from_denormals(Real x) {
  return __builtin_fabs(x) >= 0x1p-60 || is_zero(x);
}

// Whether one number can be made without a frame, of a uniform that is far from denormals, too: then it does not matter
// what the thread flushes, and that its arithmetic rounds as it should is found out by two sums. To read the control word
// would wait for all arithmetic before.
template <class... Real>
bool needs_no_frame(Real... parameter) {
  return (... && is_far_from_denormals(parameter)) && brng::rounds_to_nearest();
}

// ---- numbers by a formula, each of one uniform
//
//   template <class Real> struct Formula {
//     Real a, scale;                                                    // all its parameters
//     static constexpr Real kLow, kHigh;                                // where its uniforms lie
//     static bool is_plain(Real u);                                     // whether u is in no error of vector math
//     template <class Math> void operator()(const Math& math, int count, Real* x) const;  // in place
//   };
template <class Formula, class Real>
int transformed(const VectorMath& math, KobStream* stream, int n, Real* r, Formula formula) {
  return transformed_uniforms(stream, n, r, Formula::kLow, Formula::kHigh,
                              [&](int count, Real* x) { formula(math, count, x); });
}
template <class Formula, class Real>
int transformed_one(const VectorMath& math, Real* r, Formula formula) {
  formula(math, 1, r);
  return KOB_STATUS_OK;
}
template <class Formula, class Real>
int by_formula(TefErrorCallBack call_back, KobStream* stream, int n, Real* r, Formula formula) {
  if (n != 1 || !needs_no_frame(formula.a, formula.scale))
    return framed<transformed<Formula, Real>>(call_back, stream, n, r, formula);
  const int status = uniform(stream, 1, r, Formula::kLow, Formula::kHigh);
  if (status < 0) return status;
  if (!is_far_from_denormals(*r) || !Formula::is_plain(*r))
    return framed<transformed_one<Formula, Real>>(call_back, r, formula);
  formula(BareVectorMath(), 1, r);
  return status;
}

}  // namespace orx::rng

// The exported functions of a formula of a displacement and a scale.
#define ORX_FORMULA(Name, d_call_back, s_call_back)                                                      \
  ORX_API int _kobdRng##Name(int, KobStream* stream, int n, double r[], double a, double beta) {         \
    using orx::brng::argument_value;                                                                     \
    return by_formula(d_call_back, stream, n, r, Name<double>{argument_value(a), argument_value(beta)}); \
  }                                                                                                      \
  ORX_API int _kobsRng##Name(int, KobStream* stream, int n, float r[], float a, float beta) {            \
    return by_formula(s_call_back, stream, n, r, Name<float>{a, beta});                                  \
  }
