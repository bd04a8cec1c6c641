// Parameters of the 6024 twisters of period 2^2203 - 1, by the number of the sub-generator: the matrix word
// and the two tempering masks. All characteristic polynomials are irreducible of degree 2203 and no two are
// alike.
//
// The rows were found by dynamic creation (M. Matsumoto and T. Nishimura, Monte Carlo and Quasi-Monte Carlo
// Methods 1998, Springer (2000) 56-69). The low half of the matrix word is the row's identity. The masks keep
// the total defect of equidistribution, the sum of floor(2203 / v) - k(v) over v = 1 .. 32, at 713 or less.
// The polynomials have 35 terms or more, 120 on average.
#pragma once

#include <cstdint>

namespace orx::brng {
struct Mt2203Parameters {
  uint32_t MatrixA, MaskB, MaskC;
};
}  // namespace orx::brng

extern "C" const orx::brng::Mt2203Parameters _kob_mt2203_table[6024];
