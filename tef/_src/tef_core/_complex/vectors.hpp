// Vectors of complex numbers: what the kernels of complex functions share.
#pragma once
#include <limits>

#include "frame/kernel.hpp"
#include "orx/base/simd/pairs.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class N>
inline Complex<N> complex_of(N re, N im) {
  return {re, im};
}

template <int n>
inline Complex<Vec<double, 2 * n>> widen(Complex<Vec<float, n>> z) {
  return {simd::widen(z.re), simd::widen(z.im)};
}
template <int n>
inline Complex<Vec<float, n / 2>> narrow(Complex<Vec<double, n>> z) {
  return {simd::narrow(z.re), simd::narrow(z.im)};
}

// An operation on complex numbers whose parts stand side by side, an even number of vectors or one.
template <class Operation, class T, int n>
inline Vec<T, n> side_by_side(Vec<T, n> a, Vec<T, n> b) {
  Complex<Vec<T, (n + 1) / 2>> x, y;
  unzip_pairs(a, x.re, x.im);
  unzip_pairs(b, y.re, y.im);
  const auto z = Operation::of(x, y);
  return zip_pairs<n>(z.re, z.im);
}

// -x, also of a zero.
template <class T, int n>
inline Vec<T, n> opposite(Vec<T, n> x) {
  return bit_xor(x, broadcast_bits<Vec<T, n>>(kSignBit<T>));
}

template <class T>
constexpr Row<T> kLargestPart = std::numeric_limits<T>::max();

// A part is infinite or NaN.
template <class T, int n>
inline Mask<T, n> not_finite(Complex<Vec<T, n>> z) {
  return bit_or(not_at_most(magnitude(z.re), kLargestPart<T>), not_at_most(magnitude(z.im), kLargestPart<T>));
}
template <class T, int n>
inline Mask<T, n> any_infinite(Complex<Vec<T, n>> z) {
  return bit_or(less(constant<Vec<T, n>>(kLargestPart<T>), magnitude(z.re)),
                less(constant<Vec<T, n>>(kLargestPart<T>), magnitude(z.im)));
}
// By each part: the bits of two together may be those of a signalling NaN.
template <class T, int n>
inline Mask<T, n> is_zero(Complex<Vec<T, n>> z) {
  return bit_and(equal(z.re, Vec<T, n>{}), equal(z.im, Vec<T, n>{}));
}

constexpr Row<double> kModerateFrom = 0x1p-60;
template <class T>
constexpr Row<T> kModerateTo = sizeof(T) == 4 ? T(0x1p124) : T(0x1p60);
// For a number next to 0: of a logarithm, or from a pole.
template <class T>
constexpr Row<T> kModulusFrom = sizeof(T) == 4 ? T(0x1p-124) : T(0x1p-60);

// A part is neither 0 nor moderate. Singles are carried in doubles, where their squares neither overflow nor underflow: only the
// approximate reciprocal in an angle has an end of its range there.
template <class T, int n>
inline Mask<T, n> not_moderate(Complex<Vec<T, n>> z) {
  const auto part = [](Vec<T, n> x) {
    if constexpr (sizeof(T) == 4)
      return not_at_most(magnitude(x), kModerateTo<T>);
    else
      return bit_andnot(equal(x, Vec<T, n>{}), outside(magnitude(x), kModerateFrom, kModerateTo<T>));
  };
  return bit_or(part(z.re), part(z.im));
}
template <class T, int n>
inline Mask<T, n> too_small(Complex<Vec<T, n>> z) {
  return bit_and(less(magnitude(z.re), kModulusFrom<T>), less(magnitude(z.im), kModulusFrom<T>));
}

ORX_ISA_END
