// Arc sine and arc cosine.
//
// With r = 2 |x| where |x| < 1/2 and r = sqrt(2 - 2 |x|) beyond, r is at most 1, and A = 2 asin(r/2) is 2 asin |x| or
// pi - 2 asin |x|. So
//
//   |x| < 1/2     asin |x| = A/2          acos x = pi/2 -+ A/2
//   beyond        asin |x| = pi/2 - A     acos x = A or pi - A
//
// and one odd polynomial gives A. HA takes A in two parts, and the sum from its large end; LA and EP take a root for r in
// both cases, whose argument is the smaller of 4 x^2 and 2 - 2 |x|.
#pragma once
#include "_heap/real/horner_of_pairs.hpp"
#include "asin/vdasin.hpp"
#include "asin/vsasin.hpp"
#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class X>
constexpr const auto& arc_data() {
  if constexpr (std::is_same_v<typename X::Element, double>)
    return vdasin_data;
  else
    return vsasin_data;
}
// Of singles by pairs of terms, which needs no higher powers of the square: they might underflow.
template <class X, class C>
inline X arc_polynomial(X square, const C& c) {
  if constexpr (std::is_same_v<typename X::Element, double>)
    return polynomial(square, square * square, c);
  else
    return horner_of_pairs(square, square * square, c);
}

// Of |x|, not below `tiny`, to 1: r^2, its root, and whether |x| is beyond 1/2.
template <class X>
struct Chord {
  X square, root;
  Mask<typename X::Element, X::kCount> steep;

  explicit Chord(X size) : steep(not_below(size, arc_data<X>().half)) {
    const X twice = size + size;
    square = min(twice * twice, arc_data<X>().two - twice);
    root = square_root(square);
  }
};

// base + base_lo + part A; the part is +-1 where the chord is steep, +-1/2 elsewhere, the base 0 or larger than that. Where
// the base is 0 or the sum `large`, at least 1, the sum may be rounded on the way.
struct ArcHA {
  template <bool large, class X>
  static X sum(X size, const Chord<X>& chord, X base, X base_lo, X part) {
    const auto& d = arc_data<X>();
    const X square = chord.square, root = chord.root;
    const X leading = select(chord.steep, root, size);
    // The root lacks half of what its square lacks, over the root.
    const auto digits = split(root);
    const X excess = product_residue(root, digits.high, square) + root * digits.low;
    const X root_lo = keep(chord.steep, excess * approximate_reciprocal((root + root) + d.tiny));
    const X rest = (leading * square) * arc_polynomial(square, d.ha);
    const X sign = bit_and(part, broadcast_bits<X>(kSignBit<typename X::Element>));
    const auto sum = fast_two_sum(base, bit_xor(leading, sign));
    // What the parts lack is added up first: beside `rest` it is rounded once.
    const X lacking = sum.low + (base_lo - bit_xor(root_lo, sign));
    return sum.high + (lacking + bit_xor(rest, sign));
  }
};
template <bool ep>
struct ArcByRoot {
  template <bool large, class X>
  static X sum(X, const Chord<X>& chord, X base, X, X part) {
    const auto& d = arc_data<X>();
    const X square = chord.square, root = chord.root;
    if constexpr (ep) {  // a factor near 1, which the root need not wait for, but whose rounding shows
      return multiply_add(root, multiply_add(square * part, arc_polynomial(square, d.ep), part), base);
    } else {
      const X p = arc_polynomial(square, d.la);
      if constexpr (large)  // the root joins the base while the polynomial is still on its way
        return multiply_add(root * (square * part), p, base + root * part);
      else
        return multiply_add(multiply_add(root * square, p, root), part, base);
    }
  }
};
using ArcLA = ArcByRoot<false>;
using ArcEP = ArcByRoot<true>;

// What both functions have in common where |x| is above 1, or no number.
template <class T>
struct ArcKernel : Kernel<T(T)> {
  template <class X, class Left>
  static void finish_outside(X x, Left& left) {
    const auto& d = arc_data<X>();
    left.finish(unordered(x, x), [&](X nan) { return keep(nan, x) + keep(nan, x); });
    left.finish(
        left.lanes, [&](X which) { return square_root(d.one - keep(which, magnitude(x))); }, StatusDomain);
  }
};

template <class T, class Method>
struct ArcSine : ArcKernel<T> {
  template <class X>
  static auto rare(X x) {
    return outside(magnitude(x), arc_data<X>().tiny, arc_data<X>().one);
  }
  template <class X>
  static X eval(X x) {
    const auto& d = arc_data<X>();
    const X size = magnitude(x);
    const Chord<X> chord(size);
    const X base = keep(chord.steep, constant<X>(d.quarter)),
            base_lo = keep(chord.steep, constant<X>(d.quarter_lo));
    const X part = select_by_sign(X(chord.steep), constant<X>(d.minus_one), constant<X>(d.half));
    return with_sign_of(Method::template sum<false>(size, chord, base, base_lo, part), x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(less(magnitude(x), arc_data<X>().tiny), [&](X tiny) { return exact_result(keep(tiny, x)); });
    ArcKernel<T>::finish_outside(x, left);
  }
};

template <class T, class Method>
struct ArcCosine : ArcKernel<T> {
  template <class X>
  static auto rare(X x) {
    return not_at_most(magnitude(x), arc_data<X>().one);
  }
  template <class X>
  static X eval(X x) {
    const auto& d = arc_data<X>();
    // What is tiny does not show beside pi/2.
    const X size = max(magnitude(x), d.tiny);
    const Chord<X> chord(size);
    // From pi/2, or from 0 where x is large, from pi where -x is.
    const X sign = bit_and(x, broadcast_bits<X>(kSignBit<T>));
    const auto base = [&](const Row<T>& quarter) {
      return quarter - keep(chord.steep, bit_xor(sign, quarter));
    };
    const X part =
        bit_xor(select_by_sign(X(chord.steep), constant<X>(d.one), constant<X>(d.minus_half)), sign);
    return Method::template sum<true>(size, chord, base(d.quarter), base(d.quarter_lo), part);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    ArcKernel<T>::finish_outside(x, left);
  }
};

ORX_ISA_END
