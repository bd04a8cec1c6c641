// Root and magnitudes.
#include "_heap/real/extended.hpp"
#include "orx/base/api.hpp"
#include "orx/base/bits.hpp"
#include "orx/tef_scalar.h"

ORX_API long double orx_tef_kernel_sqrtl_scalar(long double x) { return orx::tef::square_root(x); }
ORX_API long double orx_tef_kernel_fabsl_scalar(long double x) { return __builtin_fabsl(x); }
ORX_API double orx_tef_kernel__dabs_scalar(double x) {
  return orx::bit_cast<double>(orx::bit_cast<uint64_t>(x) & ~orx::kSignBit<double>);
}
ORX_API float orx_tef_kernel__sabs_scalar(float x) {
  return orx::bit_cast<float>(orx::bit_cast<uint32_t>(x) & ~orx::kSignBit<float>);
}
