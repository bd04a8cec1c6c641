// Pairs of normal numbers from pairs of uniforms.
//   G. E. P. Box, M. E. Muller, A note on the generation of random normal deviates, Ann. Math. Stat. 29 (1958).
#pragma once

#include "distribution.hpp"

namespace orx::rng {

template <class Real>
constexpr Real kTwoPi = Real(0x1.921fb54442d18p+2);

// Of `count` pairs of uniforms: the radius sqrt(-2 ln u1), and the angle 2 pi u2.
template <class Real>
void to_polar(const VectorMath& math, int count, const Real* u, Real* radius, Real* angle) {
  Real* const u1 = angle;
  for (int i = 0; i < count; ++i) u1[i] = u[2 * i];
  math.ln(count, u1, radius);
  for (int i = 0; i < count; ++i) {
    radius[i] = root(-2 * radius[i]);
    angle[i] = kTwoPi<Real> * u[2 * i + 1];
  }
}

// 2 pairs normal numbers, sine and cosine half in turn, of 2 pairs uniforms, which may lie in the same place. At most
// kBlock / 2 pairs.
template <class Real>
void to_normals(const VectorMath& math, int pairs, const Real* u, Real* r, Real a = 0, Real sigma = 1) {
  Real radius[kBlock / 2], angle[kBlock / 2], sine[kBlock / 2], cosine[kBlock / 2];
  to_polar(math, pairs, u, radius, angle);
  math.sincos(pairs, angle, sine, cosine);
  for (int i = 0; i < pairs; ++i) {
    r[2 * i] = a + sigma * (radius[i] * sine[i]);
    r[2 * i + 1] = a + sigma * (radius[i] * cosine[i]);
  }
}

// One of the two, bit for bit: SinCos has the bits of Sin and Cos.
enum class Half { kSine, kCosine };
template <class Math, class Real>
Real normal(const Math& math, Half half, Real u1, Real u2, Real a, Real sigma) {
  Real ln, wave, angle = kTwoPi<Real> * u2;
  math.ln(1, &u1, &ln);
  half == Half::kSine ? math.sin(1, &angle, &wave) : math.cos(1, &angle, &wave);
  return a + sigma * (root(-2 * ln) * wave);
}

}  // namespace orx::rng
