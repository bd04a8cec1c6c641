// The family of twisters with N = 69, M = 34 and 5 lower bits: its recursion, its tempering and its
// characteristic polynomials.  Shared by the two halves of the search, and by nothing else.
//
// M. Matsumoto and T. Nishimura, "Mersenne Twister: a 623-dimensionally equidistributed uniform pseudo-random
// number generator", ACM Trans. Model. Comput. Simul. 8 (1998) 3-30, and "Dynamic creation of pseudorandom
// number generators", Monte Carlo and Quasi-Monte Carlo Methods 1998, Springer (2000) 56-69.
#pragma once

#include <cstdint>

namespace mt2203 {

constexpr int kN = 69, kM = 34, kWord = 32, kLower = 5;
constexpr int kDegree = kN * kWord - kLower;  // 2203, the exponent of a Mersenne prime
constexpr uint32_t kLowerMask = (1u << kLower) - 1;

struct Row {
  uint32_t matrix, mask_b, mask_c;
};

// The word that follows the N words x[0] .. x[N-1]; the lower bits of x[0] do not matter.
inline uint32_t next_word(const uint32_t* x, uint32_t matrix) {
  const uint32_t y = (x[0] & ~kLowerMask) | (x[1] & kLowerMask);
  return x[kM] ^ (y >> 1) ^ (y & 1 ? matrix : 0);
}

inline uint32_t temper(uint32_t y, const Row& row) {
  y ^= y >> 12;
  y ^= (y << 7) & row.mask_b;
  y ^= (y << 15) & row.mask_c;
  return y ^ (y >> 18);
}

// Visits the characteristic polynomial of the recursion as an affine function of the matrix word:
// u^27 v^5 plus, for each bit i of the word that is set, u^27 v^(4-i) (i < 5) or u^(31-i) (i >= 5),
// where u = t^N + t^M and v = t^(N-1) + t^(M-1).  `visit(-1, p, q)` tells the constant term u^p v^q.
template <class Visit>
void characteristic_terms(Visit visit) {
  visit(-1, kWord - kLower, kLower);
  for (int i = 0; i < kLower; ++i) visit(i, kWord - kLower, kLower - 1 - i);
  for (int i = kLower; i < kWord; ++i) visit(i, kWord - 1 - i, 0);
}

}  // namespace mt2203
