// (x^2 + y^2)^(1/2): what both precisions share. Where squares might overflow or lose their place, and that is where the
// larger number's magnitude is outside of [least, largest], all is done in another scale.
#pragma once
#include <limits>

#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class T>
struct HypotLimits {
  static constexpr bool kDouble = sizeof(T) == 8;
  Row<T> least = kDouble ? T(0x1p-390) : T(0x1p-48f), largest = kDouble ? T(0x1p+510) : T(0x1p+62f);
  // Of a number that is smaller by this and more it does not matter how much smaller it is; but its square might
  // underflow.
  Row<T> little = kDouble ? T(0x1p-60) : T(0x1p-14f);
  Row<T> infinity = std::numeric_limits<T>::infinity();
};
template <class T>
inline constexpr HypotLimits<T> kHypot{};

// Infinities and NaN: an infinity beats NaN. What is finite is left.
template <class X, class Left>
inline void finish_infinite(X x, X y, Left& left) {
  const X infinity = constant<X>(kHypot<typename X::Element>.infinity);
  left.finish(bit_or(equal(magnitude(x), infinity), equal(magnitude(y), infinity)), infinity);
  left.finish(unordered(x, y), [&](X nan) { return bit_and(nan, x) + bit_and(nan, y); });
}

// Method::root(a, b), a the larger of two magnitudes, neither so large or small that a square is out of range.
template <class T, class Method>
struct Hypot : Kernel<T(T, T)> {
  template <class X>
  static auto rare(X x, X y) {
    const auto& d = kHypot<T>;
    const X a = magnitude(x), b = magnitude(y);  // no maximum: it raises invalid for NaN
    return bit_or(bit_or(not_at_most(a, d.largest), not_at_most(b, d.largest)),
                  bit_and(less(a, d.least), less(b, d.least)));
  }
  template <class X>
  static X eval(X x, X y) {
    const X a = magnitude(x), b = magnitude(y);
    return of_sorted(max(a, b), min(a, b));
  }
  template <class X, class Left>
  static void finish(X x, X y, Left& left) {
    finish_infinite(x, y, left);
    const X m = keep(left.lanes, magnitude(x)), n = keep(left.lanes, magnitude(y));
    const X a = max(m, n), b = min(m, n);
    left.finish(equal(a, X{}), a);
    const X up = broadcast<X>(kUp), down = broadcast<X>(1 / kUp);
    left.finish(less(a, broadcast<X>(1)),
                [&](X small) { return of_sorted(select(small, a, down) * up, keep(small, b) * up) * down; });
    left.finish(left.lanes, [&](X large) {
      const X safe = select(large, a, up);
      return of_sorted(safe * down, max(b, safe * kHypot<T>.little) * down) * up;
    });
  }

 private:
  static constexpr T kUp = sizeof(T) == 8 ? T(0x1p+700) : T(0x1p+100f);

  template <class X>
  static X of_sorted(X a, X b) {
    return Method::root(a, max(b, a * kHypot<T>.little));
  }
};

// Three roundings.
struct PlainHypot {
  template <class X>
  static X root(X a, X b) {
    return square_root(a * a + b * b);
  }
};

ORX_ISA_END
