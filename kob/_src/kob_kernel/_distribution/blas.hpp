// The BLAS and LAPACK routines of the multivariate normal law, one name for both precisions. Matrices are column by
// column.
#pragma once

extern "C" {
#define ORX_BLAS_DECLARE(t, T)                                                                         \
  void t##trmm_(const char* side, const char* uplo, const char* trans, const char* diag, const int* m, \
                const int* n, const T* alpha, const T* a, const int* lda, T* b, const int* ldb);       \
  void t##tpmv_(const char* uplo, const char* trans, const char* diag, const int* n, const T* a, T* x, \
                const int* incx);                                                                      \
  void t##potrf_(const char* uplo, const int* n, T* a, const int* lda, int* info);                     \
  void t##potri_(const char* uplo, const int* n, T* a, const int* lda, int* info);
ORX_BLAS_DECLARE(d, double)
ORX_BLAS_DECLARE(s, float)
#undef ORX_BLAS_DECLARE
}

namespace orx::rng::blas {

#define ORX_BLAS_WRAP(t, T)                                                                 \
  /* b, m by n, becomes a' b with the upper triangle of a. */                               \
  inline void multiply_by_upper_transposed(int m, int n, const T* a, T* b) {                \
    const T one = 1;                                                                        \
    t##trmm_("L", "U", "T", "N", &m, &n, &one, a, &m, b, &m);                               \
  }                                                                                         \
  /* The same with a itself, its lower triangle packed: a vector at a time. */              \
  inline void multiply_by_packed_lower(int m, int n, const T* a, T* b) {                    \
    const int one = 1;                                                                      \
    for (int i = 0; i < n; ++i, b += m) t##tpmv_("L", "N", "N", &m, a, b, &one);            \
  }                                                                                         \
  /* Cholesky factor, and inverse from the factor, in the upper triangle; LAPACK's info. */ \
  inline int potrf(int n, T* a) {                                                           \
    int info = 0;                                                                           \
    t##potrf_("U", &n, a, &n, &info);                                                       \
    return info;                                                                            \
  }                                                                                         \
  inline int potri(int n, T* a) {                                                           \
    int info = 0;                                                                           \
    t##potri_("U", &n, a, &n, &info);                                                       \
    return info;                                                                            \
  }
ORX_BLAS_WRAP(d, double)
ORX_BLAS_WRAP(s, float)
#undef ORX_BLAS_WRAP

}  // namespace orx::rng::blas
