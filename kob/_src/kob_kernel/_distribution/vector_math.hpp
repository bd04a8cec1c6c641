// Vector math inside a distribution generator: errors go to the generator's own call-back, and what the calling
// thread had set acts again afterwards, bit for bit, whichever way the generator is left.
#pragma once

#include "orx/base/vector_math_thread.hpp"
#include "orx/tef.h"

namespace orx::rng {

// Denormals are not flushed for the life of the object.
class KeepDenormals {
 public:
  KeepDenormals() : mode_(tefMode) { tefMode = (mode_ & ~uint64_t{TEF_FLUSH_MASK}) | TEF_FLUSH_OFF; }
  ~KeepDenormals() { tefMode = mode_; }
  KeepDenormals(const KeepDenormals&) = delete;
  KeepDenormals& operator=(const KeepDenormals&) = delete;

 private:
  uint64_t mode_;
};

// The kernels that generators call, each with a Bracket around it.
template <class Bracket>
class VectorKernels {
 public:
// name(n, x, r) is the fast kernel; x and r may be the same.
#define ORX_VECTOR_FUNCTION(name, Fn)                                                                     \
  void name(int n, const double* x, double* r) const { call(orx_tef_kernel_d##Fn##_ttab[kEP], n, x, r); } \
  void name(int n, const float* x, float* r) const { call(orx_tef_kernel_s##Fn##_ttab[kEP], n, x, r); }
  ORX_VECTOR_FUNCTION(ln, Ln)
  ORX_VECTOR_FUNCTION(exp, Exp)
  ORX_VECTOR_FUNCTION(expm1, Expm1)
  ORX_VECTOR_FUNCTION(sin, Sin)
  ORX_VECTOR_FUNCTION(cos, Cos)
  ORX_VECTOR_FUNCTION(tan, Tan)
  ORX_VECTOR_FUNCTION(erfinv, ErfInv)
#undef ORX_VECTOR_FUNCTION
  void sincos(int n, const double* x, double* sine, double* cosine) const {
    call(orx_tef_kernel_dSinCos_ttab[kEP], n, x, sine, cosine);
  }
  void sincos(int n, const float* x, float* sine, float* cosine) const {
    call(orx_tef_kernel_sSinCos_ttab[kEP], n, x, sine, cosine);
  }
  void power(int n, const double* x, double exponent, double* r) const {
    call(orx_tef_kernel_dPowx_ttab[kEP], n, x, exponent, r);
  }
  void power(int n, const float* x, float exponent, float* r) const {
    call(orx_tef_kernel_sPowx_ttab[kEP], n, x, exponent, r);
  }

  // The accurate kernels, for constants of which few are made.
  double accurate_ln(double x) const { return one(orx_tef_kernel_dLn_ttab[kHA], x); }
  double accurate_exp(double x) const { return one(orx_tef_kernel_dExp_ttab[kHA], x); }
  double accurate_power(double x, double exponent) const {
    call(orx_tef_kernel_dPowx_ttab[kHA], 1, &x, exponent, &x);
    return x;
  }

 private:
  enum { kHA = 1, kEP = 2 };

  template <class Kernel, class... Arguments>
  static void call(Kernel* kernel, Arguments... arguments) {
    [[maybe_unused]] const Bracket bracket;
    kernel(arguments...);
  }
  template <class Kernel>
  static double one(Kernel* kernel, double x) {
    call(kernel, 1, &x, &x);
    return x;
  }
};

// Without a call-back the thread's own stays.
class VectorMath : public VectorKernels<KeepDenormals> {
 public:
  explicit VectorMath(TefErrorCallBack call_back) {
    tefMode = (tefMode & ~uint64_t{TEF_ERRMODE_MASK}) | TEF_ERRMODE_CALLBACK;
    if (call_back) tefErrorCallBack = call_back;
  }

 private:
  const KeepVectorMathThread thread_;
};

// For arguments that are in no error and far from denormals: nothing is set, so nothing needs to be put back.
struct NoBracket {
  NoBracket() {}
};
using BareVectorMath = VectorKernels<NoBracket>;

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

// Stand in for ErfInv at -1 and 1. That they do not mirror each other is on purpose: numbers drawn so far are to be
// drawn again.
template <class Real>
constexpr double kLowerEnd = -0x1.88bb0708b16b6p-1;
template <>
constexpr double kLowerEnd<float> = -1.0837466f;
template <class Real>
constexpr double kUpperEnd = 0x1.7744f8f74e94ap+2;
template <>
constexpr double kUpperEnd<float> = 3.832507f;

// The call-back of generators of normal numbers. ErfInv may work in place, and Ln may not: the argument is looked at.
template <class Real>
int on_normal_end(TefErrorContext* error) {
  if (error->status == StatusSingularity && error->arg1 == 0) return substitute(error, kLnOfZero<Real>);
  if (error->status != StatusSingularity && error->status != StatusDomain) return 0;
  return substitute(error, error->arg1 < 0 ? kLowerEnd<Real> : kUpperEnd<Real>);
}

}  // namespace orx::rng

#define ORX_LN_CALL_BACKS(on_error)                                                              \
  static int _vdLnCallBack(TefErrorContext* error) { return orx::rng::on_error<double>(error); } \
  static int _vsLnCallBack(TefErrorContext* error) { return orx::rng::on_error<float>(error); }
