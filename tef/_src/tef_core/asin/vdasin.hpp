// Arc sine and arc cosine, double.
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
#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

struct dAsinData {
  Row<double> one = 1.0, half = 0.5, two = 2.0, minus_half = -0.5;
  Row<uint64_t> turned_and_doubled = 0x8010000000000000;  // what makes -1 of 1/2, 1 of -1/2
  Row<double> quarter = 0x1.921fb54442d18p+0, quarter_lo = 0x1.1a62633145c07p-54;  // pi/2
  Row<double> tiny = 0x1p-60;
  // (A - r)/r^3, r <= 1: to 2^-59.8 of the angle, to 2^-55.8 of the angle, and to 2^-27.6 of the angle
  Row<double> ha[13] = {0x1.5555555555578p-5,  0x1.333333332deeep-8,  0x1.6db6db722ee5cp-11,
                        0x1.f1c71a89bb8dap-14, 0x1.6e8be02a7126ap-16, 0x1.1c49d8425acd7p-18,
                        0x1.ca21e48458f8bp-21, 0x1.7571bf1a20a22p-23, 0x1.61aeef8ab178p-25,
                        0x1.df02e38680477p-29, 0x1.65c83d857aaf9p-28, -0x1.5b24740220bedp-30,
                        0x1.0c494cd96c54ep-31};
  Row<double> la[12] = {0x1.5555555555384p-5,  0x1.333333336ff95p-8,   0x1.6db6db417c4cbp-11,
                        0x1.f1c72c8df160bp-14, 0x1.6e89ec088f40ep-16,  0x1.1c6c61168d6edp-18,
                        0x1.c6f3ac7546769p-21, 0x1.8f06b3f293923p-23,  0x1.a9795c1b7b031p-26,
                        0x1.4195ba68b257ap-26, -0x1.0c6d764a60854p-28, 0x1.0655a9e13dbacp-29};
  Row<double> ep[5] = {0x1.5555c9d33e76fp-5, 0x1.33016e65acd88p-8, 0x1.748aeec7f3e4p-11,
                       0x1.8ba18d7995903p-14, 0x1.59e76297fe1fdp-15};
};
inline constexpr dAsinData vdasin_data{};

// Of |x| from 2^-60 to 1: r^2, its root, and whether |x| is beyond 1/2.
template <class X>
struct Chord {
  X square, root;
  Mask<double, X::kCount> steep;

  explicit Chord(X size) : steep(not_below(size, vdasin_data.half)) {
    const X twice = size + size;
    square = min(twice * twice, vdasin_data.two - twice);
    root = square_root(square);
  }
};

// base + base_lo + part A; the part is +-1 where the chord is steep, +-1/2 elsewhere, the base 0 or larger than that.
struct ArcHA {
  template <class X>
  static X sum(X size, const Chord<X>& chord, X base, X base_lo, X part) {
    const auto& d = vdasin_data;
    const X square = chord.square, root = chord.root;
    const X leading = select(chord.steep, root, size);
    // The root lacks half of what its square lacks, over the root.
    const auto digits = split(root);
    const X excess = product_residue(root, digits.high, square) + root * digits.low;
    const X root_lo = keep(chord.steep, excess * approximate_reciprocal((root + root) + d.tiny));
    const X rest = (leading * square) * polynomial(square, square * square, d.ha) - root_lo;
    const X sign = bit_and(part, broadcast_bits<X>(kSignBit<double>));
    const auto sum = fast_two_sum(base, bit_xor(leading, sign));
    return sum.high + (sum.low + (base_lo + bit_xor(rest, sign)));
  }
};
template <bool ep>
struct ArcByRoot {
  template <class X>
  static X sum(X, const Chord<X>& chord, X base, X, X part) {
    const auto& d = vdasin_data;
    const X square = chord.square, root = chord.root;
    X p;
    if constexpr (ep)
      p = polynomial(square, square * square, d.ep);
    else
      p = polynomial(square, square * square, d.la);
    return multiply_add(multiply_add(root * square, p, root), part, base);
  }
};
using ArcLA = ArcByRoot<false>;
using ArcEP = ArcByRoot<true>;

// Where |x| is above 1, or no number.
struct dArcKernel : Kernel<double(double)> {
  template <class X, class Left>
  static void finish_outside(X x, Left& left) {
    const auto& d = vdasin_data;
    left.finish(unordered(x, x), [&](X nan) { return keep(nan, x) + keep(nan, x); });
    left.finish(
        left.lanes, [&](X which) { return square_root(d.one - keep(which, magnitude(x))); }, StatusDomain);
  }
};

ORX_ISA_END
