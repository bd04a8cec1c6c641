// The repair of a correlation matrix by spectral decomposition (Rebonato and Jaeckel 1999): eigenvalues below a floor
// are lifted to it, and rows scaled to length 1.
#pragma once

#include "_robust/checks.hpp"
#include "_robust/rank.hpp"
#include "_robust/root.hpp"
#include "matrix.hpp"
#include "ss_task.hpp"

namespace orx::ss::mtx_parametrz {

template <class T>
int check(const SSTask* task, unsigned method) {
  if (const int status = check_task<T>(task)) return status;
  if (const int status = check_dimension(task)) return status;
  if (!task->cor) return KOB_SS_ERROR_CORRELATION;
  if (const int status = check_matrix_storage(task, task->corStorage)) return status;
  if (!task->paramCor) return KOB_SS_ERROR_PARAMETRIZED_CORRELATION;
  if (const int status = check_matrix_storage(task, task->paramCorStorage)) return status;
  // The array has no room for a whole matrix.
  if (task->cor == task->paramCor && low_word(task->paramCorStorage) == KOB_SS_FULL &&
      low_word(task->corStorage) != KOB_SS_FULL)
    return KOB_SS_ERROR_STORAGE;
  return method & KOB_SS_SPECTRAL_DECOMPOSITION ? KOB_SS_OK : KOB_SS_ERROR_METHOD;
}

// The number of eigenvalues that were lifted.
template <class T>
int lift(int p, T* eigenvalues) {
  constexpr T floor = T(1e-14);
  int lifted = 0;
  for (int k = 0; k < p; ++k)
    if (!(eigenvalues[k] >= floor)) {
      eigenvalues[k] = floor;
      ++lifted;
    }
  return lifted;
}

// From eigenvectors V in columns, upwards of `product`: V L V' with rows and columns scaled so that the diagonal is 1.
template <class T>
void rebuild(int p, T* vectors, T* eigenvalues, T* lengths, T* product) {
  const auto v = [=](int k, int i) -> T& { return vectors[intptr_t(k) * p + i]; };
  for (int i = 0; i < p; ++i) {
    T sum = 0;
    for (int k = 0; k < p; ++k) sum += eigenvalues[k] * v(k, i) * v(k, i);
    lengths[i] = root(sum);
  }
  for (int k = 0; k < p; ++k) {
    const T scale = root(eigenvalues[k]);
    for (int i = 0; i < p; ++i) v(k, i) *= scale / lengths[i];
  }
  for (intptr_t k = 0; k < intptr_t(p) * p; ++k) product[k] = 0;
  blas::syrk('N', p, p, vectors, p, product, p);
}

template <class T>
int compute(SSTask* task, unsigned method) {
  if (const int status = check<T>(task, method)) return status;
  const int p = low_word(task->dimension), work_size = 50 * p;
  const int64_t size = int64_t(p) * p;
  const Block<T> memory(work_size + 2 * int64_t(p) + 3 * size);
  if (!memory) return KOB_SS_ERROR_MEMORY;
  T *work = memory.get(), *eigenvalues = work + work_size, *lengths = eigenvalues + p;
  T *given = lengths + p, *vectors = given + size, *product = vectors + size;

  const SymmetricMatrix<T> cor(task->cor, task->corStorage, p);
  for (int j = 0; j < p; ++j)
    for (int i = 0; i < p; ++i) given[intptr_t(j) * p + i] = i == j ? T(1) : cor.get(i, j);
  if (!all_finite(given, intptr_t(size))) return KOB_SS_ERROR_PARAMETRIZATION_EIGEN;
  std::memcpy(vectors, given, size_t(size) * sizeof(T));
  if (blas::syev('V', 'U', p, vectors, eigenvalues, work, work_size))
    return KOB_SS_ERROR_PARAMETRIZATION_EIGEN;
  const int lifted = lift(p, eigenvalues);
  if (lifted == p) return KOB_SS_ERROR_EIGENVALUES;

  const T* result = given;
  if (lifted) {
    rebuild(p, vectors, eigenvalues, lengths, product);
    result = product;
  }
  const SymmetricMatrix<T> repaired(task->paramCor, task->paramCorStorage, p);
  for (int j = 0; j < p; ++j)
    for (int i = 0; i <= j; ++i) repaired.set(i, j, i == j ? T(1) : result[intptr_t(j) * p + i]);
  return KOB_SS_OK;
}

}  // namespace orx::ss::mtx_parametrz
