// Arithmetic on numbers in two parts, the second being what the first lacks. Results are right to 2^-100 or so where nothing
// cancels, which is enough that what is rounded to a double in the end is off by half a unit and next to nothing.
#pragma once
#include "_complex/exact.hpp"

ORX_ISA_BEGIN(orx::tef)

struct InTwoData {
  Row<double> one = 1.0, half = 0.5;
  Row<double> least = 0x1p-500;  // a root or a divisor beside which 0 stays 0
};
inline constexpr InTwoData kInTwo{};

// ---- of numbers of one part
template <class X>
inline HighLow<X> product_in_two(X a, X b) {
  const X p = a * b;
  return {p, lost_in_product(Factor<X>(a), Factor<X>(b), p)};
}

// ---- sums and products
template <class X>
inline HighLow<X> operator+(HighLow<X> a, X b) {
  const auto sum = two_sum(a.high, b);
  return {sum.high, sum.low + a.low};
}
template <class X>
inline HighLow<X> operator+(HighLow<X> a, HighLow<X> b) {
  const auto sum = two_sum(a.high, b.high);
  return {sum.high, sum.low + (a.low + b.low)};
}
template <class X>
inline HighLow<X> operator-(HighLow<X> a, HighLow<X> b) {
  const auto sum = two_sum(a.high, X{} - b.high);
  return {sum.high, sum.low + (a.low - b.low)};
}
template <class X>
inline HighLow<X> operator*(HighLow<X> a, X b) {
  const auto p = product_in_two(a.high, b);
  return {p.high, p.low + a.low * b};
}
template <class X>
inline HighLow<X> operator*(HighLow<X> a, HighLow<X> b) {
  const auto p = product_in_two(a.high, b.high);
  return {p.high, p.low + (a.high * b.low + a.low * b.high)};
}
template <class X>
inline HighLow<X> operator/(HighLow<X> a, HighLow<X> b) {
  const X inverse = kInTwo.one / b.high, q = a.high * inverse;
  const auto p = product_in_two(q, b.high);
  return {q, (((a.high - p.high) - p.low) + (a.low - q * b.low)) * inverse};
}
template <class X>
inline HighLow<X> square_root(HighLow<X> a) {
  const X root = square_root(a.high);
  const auto p = product_in_two(root, root);
  return {root, ((a.high - p.high) - p.low + a.low) * (kInTwo.half / max(root, kInTwo.least))};
}
// By a power of two.
template <class X>
inline HighLow<X> scaled(HighLow<X> a, const Row<double>& power) {
  return {a.high * power, a.low * power};
}

template <class X>
inline X scaled(X a, const Row<double>& power) {
  return a * power;
}

// a with the second part below the last place of the first.
template <class X>
inline HighLow<X> normalised(HighLow<X> a) {
  return fast_two_sum(a.high, a.low);
}

// ---- signs and choices
template <class X>
inline HighLow<X> select(X mask, HighLow<X> a, HighLow<X> b) {
  return {select(mask, a.high, b.high), select(mask, a.low, b.low)};
}
template <class T, int n>
inline HighLow<Vec<T, n>> bit_andnot(Vec<T, n> mask, HighLow<Vec<T, n>> a) {
  return {bit_andnot(mask, a.high), bit_andnot(mask, a.low)};
}
// a where `sign` is positive, -a where it is negative.
template <class X>
inline HighLow<X> turned_by(HighLow<X> a, X sign) {
  const X bit = bit_and(sign, broadcast_bits<X>(kSignBit<double>));
  return {bit_xor(a.high, bit), bit_xor(a.low, bit)};
}
template <class X>
inline HighLow<X> opposite(HighLow<X> a) {
  return turned_by(a, broadcast_bits<X>(kSignBit<double>));
}
template <class T, int n>
inline Vec<T, n> turned_by(Vec<T, n> a, Vec<T, n> sign) {
  return bit_xor(a, bit_and(sign, broadcast_bits<Vec<T, n>>(kSignBit<T>)));
}
template <class X>
inline X high_part(HighLow<X> a) {
  return a.high;
}
template <class T, int n>
inline Vec<T, n> high_part(Vec<T, n> a) {
  return a;
}
template <class X>
inline HighLow<X> magnitude(HighLow<X> a) {
  return turned_by(a, a.high);
}
template <class X>
inline HighLow<X> max(HighLow<X> a, const Row<double>& least) {
  return {max(a.high, least), a.low};
}
// The number, with its sign also where it is 0.
template <class X>
inline X rounded_sum(HighLow<X> a) {
  return with_sign_of(a.high + a.low, a.high);
}

ORX_ISA_END
