// The angle of the point (x, y).
#pragma once
#include "atan/octants.hpp"
#include "frame/exceptions.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class T>
struct PointConstants {
  static constexpr bool kDouble = sizeof(T) == 8;
  using Word = BitsOf<T>;
  // Coordinates from 1/moderate to moderate are the usual ones. One that is below 1/moderate of the other is next to 0.
  Row<T> moderate = T(0x1p+60), moderate_inverse = T(0x1p-60);
  Row<T> lowest = T(kDouble ? 0x1p-900 : 0x1p-100), up = T(kDouble ? 0x1p+200 : 0x1p+64);
  Row<T> one = T(1.0), infinity = std::numeric_limits<T>::infinity();
  Row<T> quarter = T(0x1.921fb54442d18p+0), half_turn = T(0x1.921fb54442d18p+1);
  static constexpr int kMantissa = kDouble ? 52 : 23, kBias = kDouble ? 1023 : 127;
  static constexpr Word kField = Word(2 * kBias + 1) << kMantissa;
  static constexpr Word k60Orders = Word(60) << kMantissa;
  // Less the exponent field of x: the power of two that makes x about 2^20.
  static constexpr Word kTo20 = Word(2 * kBias + 20) << kMantissa;
};
template <class T>
inline constexpr PointConstants<T> kPoint{};

// The sizes of coordinates, of 1 in lanes that are not asked for.
template <class T, class X>
struct Sizes {
  X y, x;

  Sizes(X which, X point_y, X point_x)
      : y(select(which, magnitude(point_y), constant<X>(kPoint<T>.one))),
        x(select(which, magnitude(point_x), constant<X>(kPoint<T>.one))) {}

  // One of them is next to nothing beside the other: the angle is y/x, pi/2 or pi.
  X near_axis() const {
    const X smaller = min(y, x), larger = max(y, x);
    return bit_or(less(smaller, reals<X>(bits(larger) - PointConstants<T>::k60Orders)), equal(smaller, X{}));
  }

  // Others of any size become moderate. What is infinite counts as 1 beside 0; else a power of two, exactly, gives the
  // larger the size 2^20.
  void make_moderate() {
    using Constants = PointConstants<T>;
    const auto& d = kPoint<T>;
    const X one = constant<X>(d.one);
    const auto infinite = equal(max(y, x), d.infinity);
    y = select(infinite, keep(equal(y, d.infinity), one), y);
    x = select(infinite, keep(equal(x, d.infinity), one), x);
    scale_by(select(less(max(y, x), d.lowest), constant<X>(d.up), one));
    scale_by(reals<X>(Constants::kTo20 - (bits(max(y, x)) & Constants::kField)));
  }

 private:
  void scale_by(X factor) {
    y = y * factor;
    x = x * factor;
  }
};

template <class T, class Method>
struct ArcTangent2 : Kernel<T(T, T)> {
  template <class X>
  static auto rare(X y, X x) {
    const auto& d = kPoint<T>;
    return bit_or(outside(magnitude(y), d.moderate_inverse, d.moderate),
                  outside(magnitude(x), d.moderate_inverse, d.moderate));
  }
  template <class X>
  static X eval(X y, X x) {
    return with_sign_of(Method::of(magnitude(y), magnitude(x), x), y);
  }
  template <class X, class Left>
  static void finish(X y, X x, Left& left) {
    left.finish(unordered(y, x), [&](X nan) { return keep(nan, y) + keep(nan, x); });
    const Sizes<T, X> sizes(left.lanes, y, x);
    left.finish(sizes.near_axis(), [&](X) { return with_sign_of(axis(sizes, x), y); });
    left.finish(left.lanes, [&](X which) {
      Sizes<T, X> others(which, y, x);
      others.make_moderate();
      return with_sign_of(Method::of(others.y, others.x, x), y);
    });
  }

 private:
  // The angle near an axis; x counts by its sign. Ahead it may be denormal.
  template <class X>
  static X axis(const Sizes<T, X>& sizes, X x) {
    const auto& d = kPoint<T>;
    const X one = constant<X>(d.one);
    const auto behind = spread_signs(x), steep = less(sizes.x, sizes.y);
    const auto ahead = bit_andnot(bit_or(behind, steep), not_equal(sizes.x, X{}));
    const X quotient = exact_result(keep(ahead, sizes.y) / select(ahead, sizes.x, one));
    return select(steep, constant<X>(d.quarter), select(behind, constant<X>(d.half_turn), quotient));
  }
};

ORX_ISA_END
