// The tridiagonal solvers by precision, with plain arguments. Elements of row i: lower[i-1], diagonal[i],
// upper[i].
#pragma once

#include <cstdint>

#include "orx/serv.h"

namespace orx::df {

#define ORX_DF_SOLVERS(t, Real)                                                                    \
  /* Factors in place. */                                                                          \
  inline int32_t factor(int64_t n, Real* lower, Real* diagonal, Real* upper) {                     \
    const auto order = int32_t(n);                                                                 \
    int32_t info = 0;                                                                              \
    t##dttrfb_4dfl(&order, lower, diagonal, upper, &info);                                         \
    return info;                                                                                   \
  }                                                                                                \
  /* Solves with factors for `sides` right sides, `stride` elements apart. */                      \
  inline int32_t solve_factored(int64_t n, int64_t sides, const Real* lower, const Real* diagonal, \
                                const Real* upper, Real* b, int64_t stride) {                      \
    const auto order = int32_t(n), count = int32_t(sides), ldb = int32_t(stride);                  \
    int32_t info = 0;                                                                              \
    t##dttrsb_4dfl("N", &order, &count, lower, diagonal, upper, b, &ldb, &info);                   \
    return info;                                                                                   \
  }                                                                                                \
  /* Factors and solves for one right side. */                                                     \
  inline int32_t solve_once(int64_t n, Real* lower, Real* diagonal, Real* upper, Real* b) {        \
    const auto order = int32_t(n);                                                                 \
    const int32_t one = 1;                                                                         \
    int32_t info = 0;                                                                              \
    t##dtsvb_4dfl(&order, &one, lower, diagonal, upper, b, &order, &info);                         \
    return info;                                                                                   \
  }
ORX_DF_SOLVERS(d, double)
ORX_DF_SOLVERS(s, float)
#undef ORX_DF_SOLVERS

}  // namespace orx::df
