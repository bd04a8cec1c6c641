// Call-backs ready for sites outside the partition.
#include <algorithm>
#include <cstddef>
#include <limits>

#include "orx/base/api.hpp"
#include "orx/df.h"

namespace {

template <class Real>
int32_t fill_with_nan(const int64_t* count, Real* result, void* orders) {
  const int64_t wanted = orders ? *static_cast<const int64_t*>(orders) : 1;
  std::fill_n(result, ptrdiff_t(*count * wanted), std::numeric_limits<Real>::quiet_NaN());
  return ORX_DF_OK;
}

}  // namespace

ORX_API int32_t orx_df_kernel_dNanOutside(const int64_t* count, const int64_t*, const double*, double* result,
                                          void* orders) {
  return fill_with_nan(count, result, orders);
}
ORX_API int32_t orx_df_kernel_sNanOutside(const int64_t* count, const int64_t*, const float*, float* result,
                                          void* orders) {
  return fill_with_nan(count, result, orders);
}
ORX_API int32_t orx_df_kernel_dErrorOutside(const int64_t*, const int64_t*, const double*, double*, void*) {
  return ORX_DF_ERROR_OUTSIDE;
}
ORX_API int32_t orx_df_kernel_sErrorOutside(const int64_t*, const int64_t*, const float*, float*, void*) {
  return ORX_DF_ERROR_OUTSIDE;
}
