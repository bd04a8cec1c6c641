// The BLAS and LAPACK routines of the statistics, one name for both precisions. Matrices are column by
// column.
#pragma once

extern "C" {
#define ORX_BLAS_DECLARE(t, T)                                                                               \
  void t##syr_(const char* uplo, const int* n, const T* alpha, const T* x, const int* incx, T* a,            \
               const int* lda);                                                                              \
  void t##syrk_(const char* uplo, const char* trans, const int* n, const int* k, const T* alpha, const T* a, \
                const int* lda, const T* beta, T* c, const int* ldc);                                        \
  void t##gemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,            \
                const T* alpha, const T* a, const int* lda, const T* b, const int* ldb, const T* beta, T* c, \
                const int* ldc);                                                                             \
  void t##potrf_(const char* uplo, const int* n, T* a, const int* lda, int* info);                           \
  void t##potri_(const char* uplo, const int* n, T* a, const int* lda, int* info);                           \
  void t##trmm_(const char* side, const char* uplo, const char* trans, const char* diag, const int* m,       \
                const int* n, const T* alpha, const T* a, const int* lda, T* b, const int* ldb);             \
  void t##trtri_(const char* uplo, const char* diag, const int* n, T* a, const int* lda, int* info);         \
  void t##syev_(const char* jobz, const char* uplo, const int* n, T* a, const int* lda, T* w, T* work,       \
                const int* lwork, int* info);                                                                \
  void t##spevd_(const char* jobz, const char* uplo, const int* n, T* ap, T* w, T* z, const int* ldz,        \
                 T* work, const int* lwork, int* iwork, const int* liwork, int* info);
ORX_BLAS_DECLARE(d, double)
ORX_BLAS_DECLARE(s, float)
#undef ORX_BLAS_DECLARE
}

namespace orx::blas {

#define ORX_BLAS_WRAP(t, T)                                                                                 \
  /* The upper triangle of a += alpha x x'. */                                                              \
  inline void syr(int n, T alpha, const T* x, T* a, int lda) {                                              \
    const int one = 1;                                                                                      \
    t##syr_("U", &n, &alpha, x, &one, a, &lda);                                                             \
  }                                                                                                         \
  /* The upper triangle of c += a a' (trans 'N', a is n by k) or a' a (trans 'T', a is k by n). */          \
  inline void syrk(char trans, int n, int k, const T* a, int lda, T* c, int ldc) {                          \
    const T one = 1;                                                                                        \
    t##syrk_("U", &trans, &n, &k, &one, a, &lda, &one, c, &ldc);                                            \
  }                                                                                                         \
  /* c = alpha op(a) op(b) + beta c, c m by n, the inner dimension k. */                                    \
  inline void gemm(char transa, char transb, int m, int n, int k, T alpha, const T* a, int lda, const T* b, \
                   int ldb, T beta, T* c, int ldc) {                                                        \
    t##gemm_(&transa, &transb, &m, &n, &k, &alpha, a, &lda, b, &ldb, &beta, c, &ldc);                       \
  }                                                                                                         \
  /* Cholesky factor and inverse from the factor, in the upper triangle; the result is LAPACK's info. */    \
  inline int potrf(int n, T* a, int lda) {                                                                  \
    int info = 0;                                                                                           \
    t##potrf_("U", &n, a, &lda, &info);                                                                     \
    return info;                                                                                            \
  }                                                                                                         \
  inline int potri(int n, T* a, int lda) {                                                                  \
    int info = 0;                                                                                           \
    t##potri_("U", &n, a, &lda, &info);                                                                     \
    return info;                                                                                            \
  }                                                                                                         \
  /* Eigenvalues in rising order from the triangle `uplo`, and with jobz 'V' eigenvectors in its place. */  \
  inline int syev(char jobz, char uplo, int n, T* a, T* w, T* work, int lwork) {                            \
    int info = 0;                                                                                           \
    t##syev_(&jobz, &uplo, &n, a, &n, w, work, &lwork, &info);                                              \
    return info;                                                                                            \
  }                                                                                                         \
  /* b, n by n, becomes a' b with the upper triangle of a. */                                               \
  inline void trmm(int n, const T* a, T* b) {                                                               \
    const T one = 1;                                                                                        \
    t##trmm_("L", "U", "T", "N", &n, &n, &one, a, &n, b, &n);                                               \
  }                                                                                                         \
  /* The inverse of an upper triangle. */                                                                   \
  inline int trtri(int n, T* a) {                                                                           \
    int info = 0;                                                                                           \
    t##trtri_("U", "N", &n, a, &n, &info);                                                                  \
    return info;                                                                                            \
  }                                                                                                         \
  /* Eigenvalues and eigenvectors z of the lower triangle, packed column by column. */                      \
  inline int spevd(int n, T* packed, T* w, T* z, T* work, int lwork, int* iwork, int liwork) {              \
    int info = 0;                                                                                           \
    t##spevd_("V", "L", &n, packed, w, z, &n, work, &lwork, iwork, &liwork, &info);                         \
    return info;                                                                                            \
  }
ORX_BLAS_WRAP(d, double)
ORX_BLAS_WRAP(s, float)
#undef ORX_BLAS_WRAP

}  // namespace orx::blas
