// x^y: what both precisions share, all but the mathematics of usual elements.
//
// Usual are positive normal x, and y neither so large that the result is out of range for every x but 1, nor so small
// that it is 1. Method::power(x, y, late) gives their results, and in `late` the lanes whose results are not normal
// numbers. Method::power_of_any(x, y, late) does so for denormal x, too.
#pragma once
#include <limits>

#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class T>
struct PowLimits {
  Row<T> smallest = std::numeric_limits<T>::min(), largest = std::numeric_limits<T>::max(), one = 1,
         half = T(0.5);
  Row<T> infinity = std::numeric_limits<T>::infinity();
  // Of |y|. The logarithms of x are at most 745, or 104 in single, and, but for 0, at least 2^-53, or 2^-24: below the one
  // x^y is 1, before squares of y ln x underflow; above the other x^y is out of range.
  Row<T> y_least = sizeof(T) == 8 ? T(0x1p-120) : T(0x1p-36f), y_largest = T(0x1p64);
};
template <class T>
inline constexpr PowLimits<T> kPow{};

// Of y: a lane for each truth, also for infinite y, which are even. Small numbers are not halved: they might underflow.
template <class X>
struct Parity {
  X integer, odd;
  explicit Parity(X y) {
    const auto& d = kPow<typename X::Element>;
    const X half = keep(not_below(magnitude(y), d.one), y) * d.half;
    integer = equal(round<kToZero | kQuietly>(y), y);
    odd = bit_and(integer, not_equal(round<kToZero | kQuietly>(half), half));
  }
};

template <class Signature, class Method,
          int (*scalar_routine)(const typename Kernel<Signature>::Real*,
                                const typename Kernel<Signature>::Real*, typename Kernel<Signature>::Real*)>
struct Pow : Kernel<Signature> {
  using T = typename Kernel<Signature>::Real;
  static constexpr int kTogether = 2;

  template <class X>
  static auto rare(X x, X y) {
    const auto& d = kPow<T>;
    return bit_or(outside(x, d.smallest, Method::kLargest), outside(magnitude(y), d.y_least, d.y_largest));
  }
  template <class X>
  static X eval(X x, X y, X& late) {
    return Method::power(x, y, late);
  }

  // The cases in the order of C99, annex F.9.4.4; left over are results that are not normal numbers.
  template <class X, class Left>
  static void finish(X x, X y, Left& left) {
    const auto& d = kPow<T>;
    const X one = constant<X>(d.one), size = magnitude(x), y_size = magnitude(y);
    left.finish(bit_or(equal(x, one), equal(y, X{})), one);
    left.finish(unordered(x, y), [&](X nan) { return bit_and(nan, x) + bit_and(nan, y); });

    const Parity<X> parity(keep(left.lanes, y));
    left.finish(
        bit_andnot(parity.integer, bit_and(less(x, X{}), at_most(size, d.largest))),
        [&](X) { return broadcast<X>(raise_invalid<T>()); }, StatusDomain);
    const X sign = bit_and(bit_and(parity.odd, x), broadcast_bits<X>(kSignBit<T>));
    left.finish(equal(size, one), bit_or(one, sign));
    finish_extremes(x, y, sign, left);

    left.finish(less(y_size, d.y_least), [&](X tiny) { return one + keep(tiny, y); });
    if (!any(left.lanes)) return;
    const X limit = constant<X>(d.y_largest);
    X late{};
    const X value = Method::power_of_any(select(left.lanes, size, one),
                                         max(min(keep(left.lanes, y), limit), X{} - limit), late);
    left.finish(bit_andnot(spread_signs(late), left.lanes), bit_or(value, sign));
  }
  static int rare_lane(const T* a, const T* b, T* r) { return scalar_routine(a, b, r); }

 private:
  // x is 0 or infinite, or y is infinite: the result is infinite or 0.
  template <class X, class Left>
  static void finish_extremes(X x, X y, X sign, Left& left) {
    const auto& d = kPow<T>;
    const X size = magnitude(x), zero = equal(size, X{});
    const X wide = less(constant<X>(d.one), size), inverted = less(y, X{}), grows = bit_xor(wide, inverted);
    const X extreme = bit_or(keep(grows, constant<X>(d.infinity)), sign);
    left.finish(less(constant<X>(d.largest), magnitude(y)), extreme);
    left.finish(
        bit_and(zero, less(y, X{})), [&](X pole) { return d.one / select(pole, sign, constant<X>(d.one)); },
        StatusSingularity);
    left.finish(bit_or(zero, less(constant<X>(d.largest), size)), extreme);
  }
};

// The end of a scalar routine: `size` is the result but for its sign, and has raised overflow if it is infinite; the
// status to report.
template <class T>
inline int settle_power(T size, bool negative, T* r) {
  *r = negative ? -size : size;
  if (size > std::numeric_limits<T>::max()) return StatusOverflow;
  if (size >= std::numeric_limits<T>::min()) return StatusOk;
  hidden(raise_underflow<T>());  // also for denormals that are exact
  return StatusUnderflow;
}

ORX_ISA_END
