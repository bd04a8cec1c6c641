// Multivariate normal numbers: independent ones, multiplied by a Cholesky factor of the covariance. And inverses of
// covariance matrices.
#include "blas.hpp"
#include "distribution.hpp"
#include "orx/base/memory.hpp"
#include "orx/ss.h"

using namespace orx::rng;

namespace {

enum Storage { kFull, kPacked, kDiagonal };

// x = factor x + a for `vectors` vectors.
template <class Real>
void correlate(int vectors, Real* x, int dimen, int mstorage, const Real* a, const Real* t) {
  if (mstorage == kFull) blas::multiply_by_upper_transposed(dimen, vectors, t, x);
  if (mstorage == kPacked) blas::multiply_by_packed_lower(dimen, vectors, t, x);
  for (int i = 0; i < vectors; ++i, x += dimen)
    for (int j = 0; j < dimen; ++j) x[j] = mstorage == kDiagonal ? x[j] * t[j] + a[j] : x[j] + a[j];
}

// Some vectors at a time, which are multiplied while they are in cache; where one call ends and the next begins makes
// no difference to normal numbers.
template <class Real>
int vectors(int method, KobStream* stream, int n, Real* r, int dimen, int mstorage, const Real* a,
            const Real* t) {
  if (dimen == 1) return gaussian(method, stream, n, r, a[0], t[0]);
  constexpr int in_cache = 1 << 15;
  if (n < 1 || dimen < 1) return gaussian(method, stream, 0, r);
  const int most = std::max(in_cache / dimen, 1);
  return in_blocks(
      n,
      [&](int done, int count) {
        Real* const x = r + ptrdiff_t(done) * dimen;
        const int status = gaussian(method, stream, count * dimen, x);
        if (status >= 0 && uint32_t(mstorage) <= kDiagonal) correlate(count, x, dimen, mstorage, a, t);
        return status;
      },
      most);
}

// ---- inverses ----

template <class Real>
void inverse1(Real* m) {
  m[0] = 1 / m[0];
}

template <class Real>
void inverse2(Real* m) {
  const Real m00 = m[0], m01 = m[2], m11 = m[3], determinant = m00 * m11 - m01 * m01;
  m[0] = m11 / determinant;
  m[1] = m[2] = (0 - m01) / determinant;
  m[3] = m00 / determinant;
}

// By cofactors.
template <class Real>
void inverse3(Real* m) {
  const Real a = m[0], b = m[3], c = m[4], d = m[6], e = m[7],
             f = m[8];  // of the upper triangle, column by column
  const Real ca = c * f - e * e, cb = d * e - b * f, cd = b * e - c * d;
  const Real determinant = a * ca + b * cb + d * cd;
  m[0] = ca / determinant;
  m[1] = m[3] = cb / determinant;
  m[2] = m[6] = cd / determinant;
  m[4] = (a * f - d * d) / determinant;
  m[5] = m[7] = (b * d - a * e) / determinant;
  m[8] = (a * c - b * b) / determinant;
}

// On the first failure the matrix is given back, on the second it is not: callers count on either.
template <class Real>
int inverse(int p, Real* matrix) {
  if (blas::potrf(p, matrix) != 0) {
    orx::free_array(matrix);
    return KOB_SS_ERROR_INVERSE_FACTOR;
  }
  if (blas::potri(p, matrix) != 0) return KOB_SS_ERROR_INVERSE;
  return KOB_STATUS_OK;
}

}  // namespace

#define ORX_INVERSES(t, Real)                                                                      \
  static void t##InvCov1(Real* m) { inverse1(m); }                                                 \
  static void t##InvCov2(Real* m) { inverse2(m); }                                                 \
  static void t##InvCov3(Real* m) { inverse3(m); }                                                 \
  ORX_API int __kob##t##InvCov(int p, Real matrix[]) {                                             \
    static void (*const MatrInvDispatch[])(Real*) = {nullptr, t##InvCov1, t##InvCov2, t##InvCov3}; \
    if (p < 1) return KOB_STATUS_OK;                                                               \
    if (p > 3) return inverse(p, matrix);                                                          \
    MatrInvDispatch[p](matrix);                                                                    \
    return KOB_STATUS_OK;                                                                          \
  }
ORX_INVERSES(d, double)
ORX_INVERSES(s, float)

ORX_API int _kobdRngGaussianMV(int method, KobStream* stream, int n, double r[], int dimen, int mstorage,
                               const double a[], const double t[]) {
  return orx::in_default_arithmetic([&] { return vectors(method, stream, n, r, dimen, mstorage, a, t); });
}
ORX_API int _kobsRngGaussianMV(int method, KobStream* stream, int n, float r[], int dimen, int mstorage,
                               const float a[], const float t[]) {
  return orx::in_default_arithmetic([&] { return vectors(method, stream, n, r, dimen, mstorage, a, t); });
}
