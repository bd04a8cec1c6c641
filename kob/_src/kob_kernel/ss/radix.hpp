// The radix sorts under one name.
#pragma once

#include "orx/primitives.h"

namespace orx::ss {

inline void radix_sort(double* x, double* work, int n) { g9_ulosSortRadixAscend_64f_I(x, work, n); }
inline void radix_sort(float* x, float* work, int n) { g9_ulosSortRadixAscend_32f_I(x, work, n); }

// Quantile orders lie in 0 to 1; NaN does not.
template <class T>
bool orders_in_range(const T* orders, int count) {
  for (int k = 0; k < count; ++k)
    if (!(orders[k] >= 0 && orders[k] <= 1)) return false;
  return true;
}

}  // namespace orx::ss
