// Partial covariance and correlation: of the variables Y given the variables Z,
//   S(YY) - S(YZ) S(ZZ)^-1 S(ZY).
#pragma once

#include "_math/scalar.hpp"
#include "blas.hpp"
#include "matrix.hpp"
#include "orx/base/memory.hpp"
#include "ss_task.hpp"

namespace orx::ss::prtcov {

template <class T>
int check(const SSTask* task, unsigned estimates, unsigned method) {
  if (const int status = check_task<T>(task)) return status;
  if (const int status = check_dimension(task)) return status;
  if (!task->cov && !task->cor) return KOB_SS_ERROR_COVARIANCE;
  if (!(task->cov ? task->covStorage : task->corStorage)) return KOB_SS_ERROR_STORAGE_ABSENT;
  if (!task->partialIndices) return KOB_SS_ERROR_PARTIAL_INDICES;
  if (estimates & KOB_SS_PARTIAL_COVARIANCE) {
    if (!task->partialCov) return KOB_SS_ERROR_PARTIAL_COVARIANCE;
    if (!task->partialCovStorage) return KOB_SS_ERROR_STORAGE_ABSENT;
  }
  if (estimates & KOB_SS_PARTIAL_CORRELATION) {
    if (!task->partialCor) return KOB_SS_ERROR_PARTIAL_CORRELATION;
    if (!task->partialCorStorage) return KOB_SS_ERROR_STORAGE_ABSENT;
  }
  return method & KOB_SS_FAST ? KOB_SS_OK : KOB_SS_ERROR_METHOD;
}

// The covariance that the task has, or the one that its correlation tells: that has the variances on its
// diagonal.
template <class T>
class Covariance {
 public:
  explicit Covariance(const SSTask* task)
      : given_(task->cov ? task->cov : task->cor, task->cov ? task->covStorage : task->corStorage,
               low_word(task->dimension)),
        is_correlation_(!task->cov) {}

  T operator()(int i, int j) const {
    const T element = given_.get(i, j);
    if (!is_correlation_ || i == j) return element;
    return T(element * __kobdSqrt(double(given_.get(i, i))) * __kobdSqrt(double(given_.get(j, j))));
  }

 private:
  SymmetricMatrix<T> given_;
  bool is_correlation_;
};

// The matrix of the covariances of the variables `rows` with the variables `columns`, column by column.
template <class T>
void extract(const Covariance<T>& s, const int* rows, int row_count, const int* columns, int column_count,
             T* a) {
  for (int j = 0; j < column_count; ++j)
    for (int i = 0; i < row_count; ++i) *a++ = s(rows[i], columns[j]);
}

template <class T>
void mirror_upper(T* a, int n) {
  for (int j = 0; j < n; ++j)
    for (int i = 0; i < j; ++i) a[intptr_t(i) * n + j] = a[intptr_t(j) * n + i];
}

template <class T>
int compute(SSTask* task, unsigned estimates, unsigned method) {
  if (const int status = check<T>(task, estimates, method)) return status;
  const int p = low_word(task->dimension);
  const Integers roles(task, task->partialIndices);
  const Block<int> variables(2 * int64_t(p));
  if (!variables) return KOB_SS_ERROR_MEMORY;
  int *y = variables.get(), *z = y + p, ny = 0, nz = 0;
  for (int j = 0; j < p; ++j) {
    if (roles[j] == 1) y[ny++] = j;
    if (roles[j] == -1) z[nz++] = j;
  }
  if (ny == 0 || nz == 0) return KOB_SS_ERROR_PARTIAL_ROLES;

  const int64_t yy_size = int64_t(ny) * ny, zy_size = int64_t(nz) * ny, zz_size = int64_t(nz) * nz;
  const Block<T> work(yy_size + 2 * zy_size + zz_size);
  if (!work) return KOB_SS_ERROR_MEMORY;
  T *yy = work.get(), *zy = yy + yy_size, *q = zy + zy_size, *zz = q + zy_size;
  const Covariance<T> s(task);
  extract(s, y, ny, y, ny, yy);
  extract(s, z, nz, y, ny, zy);
  extract(s, z, nz, z, nz, zz);
  if (blas::potrf(nz, zz, nz)) return KOB_SS_ERROR_PARTIAL_FACTOR;
  if (blas::potri(nz, zz, nz)) return KOB_SS_ERROR_PARTIAL_INVERSE;
  mirror_upper(zz, nz);
  blas::gemm('T', 'N', ny, nz, nz, T(1), zy, nz, zz, nz, T(0), q, ny);
  blas::gemm('N', 'N', ny, ny, nz, T(-1), q, ny, zy, nz, T(1), yy, ny);

  const auto r = [&](int i, int j) { return yy[intptr_t(i) * ny + j]; };
  const auto write = [&](void* elements, const void* storage, auto element) {
    const SymmetricMatrix<T> result(elements, storage, ny);
    for (int i = 0; i < ny; ++i)
      for (int j = 0; j <= i; ++j) result.set(i, j, T(element(i, j)));
  };
  if (estimates & KOB_SS_PARTIAL_COVARIANCE) write(task->partialCov, task->partialCovStorage, r);
  if (estimates & KOB_SS_PARTIAL_CORRELATION)
    write(task->partialCor, task->partialCorStorage, [&](int i, int j) {
      return i == j ? double(r(i, i)) : r(i, j) / __kobdSqrt(double(r(i, i))) / __kobdSqrt(double(r(j, j)));
    });
  return KOB_SS_OK;
}

}  // namespace orx::ss::prtcov
