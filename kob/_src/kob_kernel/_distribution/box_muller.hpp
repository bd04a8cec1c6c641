// Pairs of normal numbers from pairs of uniforms.
//   G. E. P. Box, M. E. Muller, A note on the generation of random normal deviates, Ann. Math. Stat. 29 (1958).
#pragma once

#include "elementary.hpp"

namespace orx::rng {

// Of `count` pairs of uniforms: the radius sqrt(-2 ln u1), and u2, the angle in turns.
template <class Real>
void to_polar(const VectorMath& math, int count, const Real* u, Real* radius, Real* turns) {
  for (int i = 0; i < count; ++i) {
    radius[i] = u[2 * i];
    turns[i] = u[2 * i + 1];
  }
  math.ln(count, radius, radius);
  for (int i = 0; i < count; ++i) radius[i] = root(-2 * radius[i]);
}

// 2 pairs normal numbers, sine and cosine half in turn, of 2 pairs uniforms, which may lie in the same place. At most
// kBlock / 2 pairs.
template <class Real>
void to_normals(const VectorMath& math, int pairs, const Real* u, Real* r, Real a = 0, Real sigma = 1) {
  Real radius[kBlock / 2], sine[kBlock / 2], cosine[kBlock / 2];
  to_polar(math, pairs, u, radius, sine);
  sincos_of_turns(pairs, sine, sine, cosine);
  for (int i = 0; i < pairs; ++i) {
    r[2 * i] = a + sigma * (radius[i] * sine[i]);
    r[2 * i + 1] = a + sigma * (radius[i] * cosine[i]);
  }
}

}  // namespace orx::rng
