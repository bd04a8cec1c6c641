// Complex numbers one at a time, for scalar routines: infinities, and a wider type in which products of finite numbers
// neither overflow nor underflow.
#pragma once
#include <limits>

#include "frame/exceptions.hpp"
#include "orx/tef_mode.h"

ORX_ISA_BEGIN(orx::tef)

template <class T>
struct WiderType;
template <>
struct WiderType<float> {
  using Type = double;
};
template <>
struct WiderType<double> {
  using Type = long double;
};
template <class T>
using Wider = typename WiderType<T>::Type;

// Quiet but for signalling NaNs.
template <class T>
inline bool is_nan(T x) {
  return x != x;
}
template <class T>
inline bool is_infinite(T x) {
  return x == std::numeric_limits<T>::infinity() || x == -std::numeric_limits<T>::infinity();
}
template <class T>
inline bool is_finite(T x) {
  return !is_nan(x) && !is_infinite(x);
}

// A complex number counts as infinite if a part is, whatever the other.
template <class T>
inline bool is_infinite(Complex<T> z) {
  return is_infinite(z.re) || is_infinite(z.im);
}
template <class T>
inline bool is_finite(Complex<T> z) {
  return is_finite(z.re) && is_finite(z.im);
}
template <class T>
inline bool both_nan(Complex<T> z) {
  return is_nan(z.re) && is_nan(z.im);
}

template <class W, class T>
inline Complex<W> widened(const Complex<T>& z) {
  return {static_cast<W>(z.re), static_cast<W>(z.im)};
}
template <class T, class W>
inline Complex<T> rounded(const Complex<W>& z) {
  return {static_cast<T>(z.re), static_cast<T>(z.im)};
}

template <class T>
inline T with_sign(T size, T sign) {
  return __builtin_signbit(sign) ? -size : size;
}
// C99, annex G.5.1: the corner, or the middle of a side, of the square that stands for an infinite number; and what
// stands for a number beside an infinite one: NaN counts as 0. Signs stay.
template <class T>
inline Complex<T> boxed(Complex<T> z) {
  const auto part = [](T x) { return with_sign(is_infinite(x) ? T(1) : T(0), x); };
  return {part(z.re), part(z.im)};
}
template <class T>
inline Complex<T> without_nan(Complex<T> z) {
  const auto part = [](T x) { return is_nan(x) ? with_sign(T(0), x) : x; };
  return {part(z.re), part(z.im)};
}
template <class T>
inline Complex<T> scaled(T factor, Complex<T> z) {
  return {factor * z.re, factor * z.im};
}

// The status of a result that must be finite.
template <class T>
inline int status_of(Complex<T> z) {
  return is_infinite(z) ? StatusOverflow : StatusOk;
}

ORX_ISA_END
