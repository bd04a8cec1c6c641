// Functions of uniforms that distributions need, on arguments that uniforms can give: shorter than general kernels,
// which have to reduce any argument first.
#pragma once

#include "distribution.hpp"

namespace orx::rng {

#include "erfinv.inc"

// c[0] + c[1] x + ... by Horner's scheme.
template <class Real, int terms>
inline Real polynomial(Real x, const Real (&c)[terms]) {
  Real sum = c[terms - 1];
  for (int i = terms - 2; i >= 0; --i) sum = sum * x + c[i];
  return sum;
}

// Sine and cosine for |x| <= pi / 4, by their series: to 2e-14 in double, 4e-7 in single precision.
template <class Real>
inline Real sine_near_0(Real x) {
  if constexpr (sizeof(Real) == 8) {
    constexpr double c[] = {
        1, -1.0 / 6, 1.0 / 120, -1.0 / 5040, 1.0 / 362880, -1.0 / 39916800, 1.0 / 6227020800};
    return x * polynomial(x * x, c);
  } else {
    constexpr float c[] = {1, -1.0f / 6, 1.0f / 120, -1.0f / 5040};
    return x * polynomial(x * x, c);
  }
}
template <class Real>
inline Real cosine_near_0(Real x) {
  if constexpr (sizeof(Real) == 8) {
    constexpr double c[] = {1,           -1.0 / 2,       1.0 / 24,        -1.0 / 720,
                            1.0 / 40320, -1.0 / 3628800, 1.0 / 479001600, -1.0 / 87178291200};
    return polynomial(x * x, c);
  } else {
    constexpr float c[] = {1, -1.0f / 2, 1.0f / 24, -1.0f / 720, 1.0f / 40320};
    return polynomial(x * x, c);
  }
}

// Sine and cosine of 2 pi u, 0 <= u <= 1. The nearest quarter of a turn is taken off exactly. The results may lie where
// u does.
template <class Real>
inline void sincos_of_turns(int count, const Real* u, Real* sine, Real* cosine) {
  for (int i = 0; i < count; ++i) {
    const Real quarters = sizeof(Real) == 8 ? Real(__builtin_floor(4 * u[i] + Real(0.5)))
                                            : Real(__builtin_floorf(float(4 * u[i] + Real(0.5))));
    const Real x = Real(0x1.921fb54442d18p+2) * (u[i] - Real(0.25) * quarters);
    const Real s = sine_near_0(x), c = cosine_near_0(x);
    const bool odd = (quarters == 1) | (quarters == 3);
    const Real first = odd ? c : s, second = odd ? s : c;
    sine[i] = (quarters == 2) | (quarters == 3) ? -first : first;
    cosine[i] = (quarters == 1) | (quarters == 2) ? -second : second;
  }
}

// tan x in place for |x| up to pi / 2 as the type has it, which is no pole.
template <class Real>
inline void tangents(int count, Real* x) {
  constexpr Real half_pi = Real(0x1.921fb54442d18p+0);
  constexpr Real rest = sizeof(Real) == 8 ? Real(0x1.1a62633145c07p-54) : Real(-0x1.777a5cp-25);
  for (int i = 0; i < count; ++i) {
    const Real magnitude = x[i] < 0 ? -x[i] : x[i];
    const bool far = magnitude > Real(0.78539816339744831);
    const Real y = far ? (half_pi - magnitude) + rest : magnitude;
    const Real s = sine_near_0(y), c = cosine_near_0(y);
    const Real tangent = (far ? c : s) / (far ? s : c);
    x[i] = x[i] < 0 ? -tangent : tangent;
  }
}

// Stand in for ErfInv at -1 and 1. That they do not mirror each other is on purpose: numbers drawn so far are to be
// drawn again.
template <class Real>
constexpr Real kLowerEnd = -0x1.88bb0708b16b6p-1;
template <class Real>
constexpr Real kUpperEnd = 0x1.7744f8f74e94ap+2;
template <>
constexpr float kLowerEnd<float> = -1.0837466f;
template <>
constexpr float kUpperEnd<float> = 3.832507f;

// erfinv x in place for a block of |x| <= 1.
template <class Real>
inline void inverse_error_functions(const VectorMath& math, int count, Real* x) {
  constexpr bool wide = sizeof(Real) == 8;
  if (count < 1) return;
  Real w[kBlock];
  for (int i = 0; i < count; ++i) w[i] = (1 - x[i]) * (1 + x[i]);
  math.ln(count, w, w);
  int tail[kBlock];
  const int in_tail = where(count, tail, [&](int i) { return w[i] < Real(-6.25); });
  Real ends[kBlock];
  for (int k = 0; k < in_tail; ++k) ends[k] = x[tail[k]];
  for (int i = 0; i < count; ++i) {
    const Real t = -w[i] - Real(3.125);
    if constexpr (wide)
      x[i] *= polynomial(t, kCentreDouble);
    else
      x[i] *= polynomial(t, kCentreSingle);
  }
  for (int k = 0; k < in_tail; ++k) {
    const Real t = root(-w[tail[k]]) - Real(4.375);
    Real y;
    if constexpr (wide)
      y = ends[k] * polynomial(t, kTailDouble);
    else
      y = ends[k] * polynomial(t, kTailSingle);
    x[tail[k]] = ends[k] <= -1 ? kLowerEnd<Real> : ends[k] >= 1 ? kUpperEnd<Real> : y;
  }
}

}  // namespace orx::rng
