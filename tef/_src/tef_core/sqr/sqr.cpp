#include "frame/arithmetic.hpp"

namespace {
struct Square {
  static constexpr bool kUnary = true;
  template <class V>
  static V apply(V x, V) {
    return x * x;
  }
};
}  // namespace

ORX_API void orx_tef_kernel_sSqr_G9HAynn(int n, const float* a, float* r) {
  orx::tef::arithmetic<Square>(n, a, a, r);
}
ORX_API void orx_tef_kernel_dSqr_G9HAynn(int n, const double* a, double* r) {
  orx::tef::arithmetic<Square>(n, a, a, r);
}
