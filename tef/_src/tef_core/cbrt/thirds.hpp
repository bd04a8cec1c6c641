// x^(p/3) for p = 1, -1, 2: one skeleton with a table and a series for each power.
//
// Double. |x| = 2^(3 q + s) m, s = 0, 1, 2, 1 <= m < 2. c is the middle of the one of 32 intervals that m lies in, and
// z = (m - c)/c, so that |z| <= 1/65 and
//
//   |x|^(p/3) = 2^(p q) (2^s c)^(p/3) (1 + z)^(p/3),
//
// the second factor from a table, the third by a polynomial. A power is described by a D:
//
//   kTable[96][2]   the factors of the table, by 32 s + interval, and what they lack
//   kData           .c[7] and .ep[3], the polynomials ((1 + z)^(p/3) - 1)/z of the classes
//   kStep           p
//   kOdd            whether the result has the sign of x
//   special(x)      the function where x is 0, infinite or NaN
//   kPole           the status to report where x is 0
#pragma once
#include <cfloat>

#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

// 1/c by interval.
alignas(64) inline constexpr double kThirdReciprocals[32] = {
#include "cbrt/reciprocals.inc"
};

struct ThirdBits {
  Row<uint64_t> fraction = 0x000FFFFFFFFFFFFF, one = 0x3FF0000000000000;
  Row<uint64_t> interval = 0x000F800000000000, middle = 0x3FF0400000000000;
};
inline constexpr ThirdBits kThirdBits{};

// By row of a table the factor beside 1/c: what LA and EP need lies together.
template <class D>
struct ThirdPairs {
  double row[96][2] = {};
  constexpr ThirdPairs() {
    for (int i = 0; i < 96; ++i) {
      row[i][0] = D::kTable[i][0];
      row[i][1] = kThirdReciprocals[i % 32];
    }
  }
};
template <class D>
alignas(64) inline constexpr ThirdPairs<D> kThirdPairs{};

// x taken apart: m - c, the row of the table, and the scale 2^(p q), with the sign of x if the function is odd.
template <class D, class X>
struct ThirdParts {
  X difference, scale;
  Indices<X> row;

  explicit ThirdParts(X x) {
    const auto& d = kThirdBits;
    const auto words = as<uint32_t>(high_words(x));
    const auto exponent = shift_right<20>(words) & 0x7FFu;
    const auto third = shift_right<14>(exponent * 0x1556u);  // exponent / 3
    const auto interval = shift_right<15>(words) & 31u;
    set_indices(row, as<int32_t>(shift_left<5>(exponent - third * 3u) + interval));

    // The bias, 1023, is 3 * 341.
    constexpr uint32_t bias = 1023 - 341 * D::kStep;
    scale = from_high_words<X>(shift_left<20>(third * static_cast<uint32_t>(D::kStep) + bias));
    if constexpr (D::kOdd) scale = with_sign_of(scale, x);

    const X m = bit_or(bit_and(x, d.fraction), d.one), c = bit_or(bit_and(x, d.interval), d.middle);
    difference = m - c;
  }
};

enum class ThirdClass { HA, LA, EP };

// Of normal numbers.
template <class D, ThirdClass accuracy, class X>
inline X third_power(X x) {
  const ThirdParts<D, X> p(x);
  const auto row = [&](int lane) { return p.row(lane); };
  X T, second;  // what T lacks, or 1/c
  if constexpr (accuracy == ThirdClass::HA) {
    gather_pairs(D::kTable[0], row, T, second);
    const X z = p.difference * gather<X>(kThirdReciprocals, [&](int lane) { return row(lane) & 31; });
    return (multiply_add(T, z * polynomial(z, z * z, D::kData.c), second) + T) * p.scale;
  } else {
    gather_pairs(kThirdPairs<D>.row[0], row, T, second);
    const X z = p.difference * second;
    if constexpr (accuracy == ThirdClass::LA)
      return multiply_add(T, z * polynomial(z, z * z, D::kData.c), T) * p.scale;
    else
      return multiply_add(T, z * polynomial(z, z * z, D::kData.ep), T) * p.scale;
  }
}

// Single. Bits of a number, read as an integer, are nearly its logarithm: y with the bits C - bits/3 is |x|^(-1/3) but
// for some percent, of which e = 1 - |x| y^3 tells, |e| <= 0.105; y (1 - e)^(-1/3) by a polynomial.
struct SingleThirdData {
  Row<float> minus_third = -0x1.555556p-2f, start = 0x1.5287dp+30f, one = 1.0f;
  Row<float> third = 0x1.555556p-2f, two_thirds = 0x1.555556p-1f;
  // ((1 - e)^(-1/3) - 1) / e, to 2^-18.3 of y and to 2^-14.2 of y
  Row<float> la[3] = {0x1.55544ep-2f, 0x1.c9d356p-3f, 0x1.655beep-3f};
  Row<float> ep[2] = {0x1.56cb4ep-2f, 0x1.ca0d78p-3f};
};
inline constexpr SingleThirdData kSingleThird{};

template <bool ep, class X>
inline X inverse_cube_root_start(X size) {
  const auto& d = kSingleThird;
  const X bits_of_y = multiply_add(integer_bits(size), d.minus_third, d.start);
  const X y = reals<X>(round_to_ints(bits_of_y));
  const X e = d.one - (size * y) * (y * y);
  if constexpr (ep)
    return multiply_add(y, e * horner(e, d.ep), y);
  else
    return multiply_add(y, e * horner(e, d.la), y);
}

// A power of singles, in singles: from y near |x|^(-1/3) a guess g of the result and the e that it leaves, by which it is
// corrected: g, D::guess(|x|, y), and D::correction(g, |x|, y).
template <class D, ThirdClass accuracy, class X>
inline X single_third_power(X x) {
  const X size = magnitude(x);
  const X y = inverse_cube_root_start<accuracy == ThirdClass::EP>(size);
  X r = D::guess(size, y);
  if constexpr (accuracy != ThirdClass::EP) {
    const X g = r, e = kSingleThird.one - D::near_one(g, size, y);
    r = multiply_add(g, e * (D::kStep == 1 ? kSingleThird.two_thirds : kSingleThird.third), g);
  }
  if constexpr (D::kOdd) r = with_sign_of(r, x);
  return r;
}

// Rare: zeros, denormals, infinities and NaN, in either precision. Core::power(x) is the power of normal numbers.
template <class T>
struct ThirdLimits {
  Row<T> smallest = std::numeric_limits<T>::min(), largest = std::numeric_limits<T>::max(), one = 1;
  // A denormal's bits behind the exponent of `under`, less `under`, are the denormal times 2^54, or 2^33 in single.
  Row<T> under = sizeof(T) == 8 ? T(0x1p-968) : T(0x1p-93f);
};
template <class T>
inline constexpr ThirdLimits<T> kThirdLimits{};

template <class D, class T, class Core>
struct Third : Kernel<T(T)> {
  static constexpr int kTogether = 2;

  template <class X>
  static auto rare(X x) {
    return outside(magnitude(x), kThirdLimits<T>.smallest, kThirdLimits<T>.largest);
  }
  template <class X>
  static X eval(X x) {
    return Core::power(x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const auto& d = kThirdLimits<T>;
    const X size = magnitude(x), one = constant<X>(d.one);
    left.finish(bit_and(less(X{}, size), less(size, d.smallest)), [&](X denormal) {
      const X up = with_sign_of(bit_or(size, constant<X>(d.under)) - d.under, x);
      return Core::power(select(denormal, up, one)) * broadcast<X>(kDown);
    });
    const X special = D::special(select(left.lanes, x, one));
    left.finish(equal(x, X{}), special, D::kPole);
    left.finish(left.lanes, special);
  }

 private:
  static constexpr int kThird = sizeof(T) == 8 ? 18 : 11;
  static constexpr T kDown = D::kStep == 2   ? T(1) / (1 << kThird) / (1 << kThird)
                             : D::kStep == 1 ? T(1) / (1 << kThird)
                                             : T(1 << kThird);
};

template <class D, ThirdClass accuracy>
struct InDoubles {
  template <class X>
  static X power(X x) {
    if constexpr (sizeof(typename X::Element) == 8)
      return third_power<D, accuracy>(x);
    else
      return narrow(third_power<D, accuracy>(widen(x)));
  }
};
template <class D, ThirdClass accuracy>
struct InSingles {
  template <class X>
  static X power(X x) {
    return single_third_power<D, accuracy>(x);
  }
};

template <class D>
using dThirdHA = Third<D, double, InDoubles<D, ThirdClass::HA>>;
template <class D>
using dThirdLA = Third<D, double, InDoubles<D, ThirdClass::LA>>;
template <class D>
using dThirdEP = Third<D, double, InDoubles<D, ThirdClass::EP>>;
template <class D>
using sThirdHA = Third<D, float, InDoubles<D, ThirdClass::EP>>;
template <class D>
using sThirdLA = Third<D, float, InSingles<D, ThirdClass::LA>>;
template <class D>
using sThirdEP = Third<D, float, InSingles<D, ThirdClass::EP>>;

ORX_ISA_END
