// Vector math inside a distribution generator: errors go to the generator's own call-back, and what the calling
// thread had set acts again afterwards, bit for bit, whichever way the generator is left.
#pragma once

#include "orx/base/vector_math_thread.hpp"
#include "orx/tef.h"

namespace orx::rng {

class VectorMath {
 public:
  // Without a call-back the thread's own stays.
  explicit VectorMath(TefErrorCallBack call_back) {
    tefMode = (tefMode & ~uint64_t{TEF_ERRMODE_MASK}) | TEF_ERRMODE_CALLBACK;
    if (call_back) tefErrorCallBack = call_back;
  }

// name(n, x, r) is the fast kernel, accurate_name(x) the accurate one, for constants of which few are made.
#define ORX_VECTOR_FUNCTION(name, Fn)                                                                     \
  void name(int n, const double* x, double* r) const { call(orx_tef_kernel_d##Fn##_ttab[kEP], n, x, r); } \
  void name(int n, const float* x, float* r) const { call(orx_tef_kernel_s##Fn##_ttab[kEP], n, x, r); }   \
  double accurate_##name(double x) const {                                                                \
    call(orx_tef_kernel_d##Fn##_ttab[kHA], 1, &x, &x);                                                    \
    return x;                                                                                             \
  }
  ORX_VECTOR_FUNCTION(ln, Ln)
  ORX_VECTOR_FUNCTION(exp, Exp)
#undef ORX_VECTOR_FUNCTION

 private:
  enum { kHA = 1, kEP = 2 };

  // Denormals are not flushed.
  template <class Kernel, class... Arguments>
  static void call(Kernel* kernel, Arguments... arguments) {
    const uint64_t mode = tefMode;
    tefMode = (mode & ~uint64_t{TEF_FLUSH_MASK}) | TEF_FLUSH_OFF;
    kernel(arguments...);
    tefMode = mode;
  }

  const KeepVectorMathThread thread_;
};

// What stands for ln 0: in double the logarithm of the smallest subnormal.
template <class Real>
constexpr double kLnOfZero = -0x1.74385446d71c3p+9;
template <>
constexpr double kLnOfZero<float> = -103.27893f;

// For error call-backs: the result of an element in error becomes `value`, the error goes no further.
inline int substitute(TefErrorContext* error, double value) {
  error->res1 = error->res2 = value;
  return 0;
}

// Call-backs of generators that take logarithms of uniforms, which can be exactly 0.
template <class Real>
int on_any_error(TefErrorContext* error) {
  return substitute(error, kLnOfZero<Real>);
}
template <class Real>
int on_pole(TefErrorContext* error) {
  return error->status == StatusSingularity ? substitute(error, kLnOfZero<Real>) : 0;
}

}  // namespace orx::rng

#define ORX_LN_CALL_BACKS(on_error)                                                              \
  static int _vdLnCallBack(TefErrorContext* error) { return orx::rng::on_error<double>(error); } \
  static int _vsLnCallBack(TefErrorContext* error) { return orx::rng::on_error<float>(error); }
