// The rank of a covariance, and its inverse: for methods that divide by covariances of their own making.
#pragma once

#include <cstring>
#include <limits>

#include "blas.hpp"
#include "orx/base/memory.hpp"
#include "orx/kob.h"
#include "orx/ss.h"

namespace orx::ss {

template <class T>
bool all_finite(const T* x, intptr_t count) {
  for (intptr_t i = 0; i < count; ++i)
    if (!(x[i] - x[i] == 0)) return false;
  return true;
}

// A variance below this is no variance, an eigenvalue below it no eigenvalue: the subnormal of the bit pattern 1000.
template <class T>
constexpr T kLeastVariance = 1000 * std::numeric_limits<T>::denorm_min();

// Accepts a symmetric matrix whose eigenvalues are all above 0. One that has others is regularised: a hundredth of the
// least positive eigenvalue is added to its diagonal. Only the upper triangle (of columns) is whole afterwards.
template <class T>
int test_rank(int p, T* a) {
  if (!all_finite(a, intptr_t(p) * p)) return KOB_SS_ERROR_NOT_POSITIVE_DEFINITE;
  if (p == 1) {
    if (a[0] > 0) return KOB_SS_OK;
    if (a[0] < -kLeastVariance<T>) return KOB_SS_ERROR_NOT_POSITIVE_DEFINITE;
    a[0] = kLeastVariance<T>;
    return KOB_SS_OK;
  }
  const Block<T> memory(5 * int64_t(p));
  if (!memory) return KOB_SS_ERROR_MEMORY;
  T *diagonal = memory.get(), *eigenvalues = diagonal + p, *work = eigenvalues + p;
  for (int j = 0; j < p; ++j) diagonal[j] = a[j * (intptr_t(p) + 1)];
  if (blas::syev('N', 'L', p, a, eigenvalues, work, 3 * p)) return KOB_SS_ERROR_RANK_EIGEN;
  T more = 0;
  if (!(eigenvalues[0] > 0)) {
    int k = 1;
    while (k < p && !(eigenvalues[k] >= kLeastVariance<T>)) ++k;
    if (k == p) return KOB_SS_ERROR_NOT_POSITIVE_DEFINITE;
    more = T(0.01) * eigenvalues[k];
  }
  for (int j = 0; j < p; ++j) a[j * (intptr_t(p) + 1)] = diagonal[j] + more;
  return KOB_SS_OK;
}

inline int inverse_covariance(int p, double* a) { return __kobdInvCov(p, a); }
inline int inverse_covariance(int p, float* a) { return __kobsInvCov(p, a); }

// The inverse of a covariance of full rank, or of one made so, in the upper triangle of `inverse`. The inversion gives
// back the matrix that does not factor, so it gets a copy that is its own.
template <class T>
int invert_covariance(int p, const T* cov, Block<T>& inverse) {
  const int64_t size = int64_t(p) * p;
  if (!inverse.allocate(size)) return KOB_SS_ERROR_MEMORY;
  std::memcpy(inverse.get(), cov, size_t(size) * sizeof(T));
  if (const int status = test_rank(p, inverse.get())) return status;
  const int status = inverse_covariance(p, inverse.get());
  if (status == KOB_SS_ERROR_INVERSE_FACTOR) (void)inverse.release();
  if (status) return status;
  // Small inverses divide by whatever the determinant is.
  for (int j = 0; j < p; ++j) {
    const T* const column = inverse.get() + intptr_t(j) * p;
    if (!all_finite(column, j + 1) || !(column[j] > 0)) return KOB_SS_ERROR_NOT_POSITIVE_DEFINITE;
  }
  return KOB_SS_OK;
}

}  // namespace orx::ss
