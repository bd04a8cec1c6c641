// What complex functions are where a part is infinite or NaN, as tables that read like those of C99, annex G.6: rows by the
// real part, columns by the imaginary one.
#pragma once
#include "_heap/complex/quick.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace special {

struct Entry {
  enum Kind { kUsual, kValue, kInvalid, kTurned } kind;
  long double re, im;
};

// In the tables names are as in print. NOLINTBEGIN(readability-identifier-naming)
constexpr long double inf = std::numeric_limits<long double>::infinity();
constexpr long double nan = std::numeric_limits<long double>::quiet_NaN();
constexpr long double pi = 3.14159265358979323851L;

// Finite arguments: computed.
constexpr Entry usual = {Entry::kUsual, 0, 0};
// NOLINTEND(readability-identifier-naming)
// NaN stands for the argument's NaN.
constexpr Entry value(long double re, long double im) { return {Entry::kValue, re, im}; }
// The same, and invalid is raised.
constexpr Entry invalid(long double re, long double im) { return {Entry::kInvalid, re, im}; }
// size cis y, y being the imaginary part.
constexpr Entry turned(long double size) { return {Entry::kTurned, size, size}; }

// Parts by kind: of functions that are odd or even it is the magnitudes that count, and the last row is not there.
enum { kZero, kFinite, kInfinite, kNaN, kMinusInfinite };

inline int kind_of(long double x) {
  if (is_finite(x)) return x == 0 ? kZero : kFinite;
  return is_nan(x) ? kNaN : kInfinite;
}

// A NaN has no side, and keeps its sign.
inline bool below_zero(long double x) { return is_negative(x) && !is_nan(x); }
inline long double signed_by(long double x, bool negative) { return negative && !is_nan(x) ? -x : x; }

// The result of an entry for z, a NaN's sign being what it was.
inline Extended of_entry(const Entry& e, Extended z) {
  if (e.kind == Entry::kTurned) {
    const SinCos y = sin_cos_of({z.im, 0});
    return {e.re * y.cos.high, e.im * y.sin.high};
  }
  const long double nan_part = e.kind == Entry::kInvalid ? extended_invalid()
                               : is_nan(z.re)            ? z.re + z.re
                                                         : z.im + z.im;
  return {is_nan(e.re) ? nan_part : e.re, is_nan(e.im) ? nan_part : e.im};
}

}  // namespace special

// f(conj z) = conj f(z): the table is for imaginary parts that are not negative. A row for each kind of real part.
inline Extended special_value(const special::Entry (&table)[5][4], Extended z) {
  const bool below = special::below_zero(z.im);
  const int row = special::kind_of(z.re) == special::kInfinite && is_negative(z.re) ? special::kMinusInfinite
                                                                                    : special::kind_of(z.re);
  const Extended y =
      special::of_entry(table[row][special::kind_of(z.im)], {z.re, special::signed_by(z.im, below)});
  return {y.re, special::signed_by(y.im, below)};
}

// f(-z) = -f(z) or f(-z) = f(z), besides: the table is for a quadrant.
enum class Parity { kOdd, kEven };
inline Extended special_value(const special::Entry (&table)[4][4], Parity parity, Extended z) {
  const bool left = special::below_zero(z.re), below = special::below_zero(z.im);
  const Extended y = special::of_entry(table[special::kind_of(z.re)][special::kind_of(z.im)],
                                       {special::signed_by(z.re, left), special::signed_by(z.im, below)});
  return parity == Parity::kOdd ? Extended{special::signed_by(y.re, left), special::signed_by(y.im, below)}
                                : Extended{y.re, special::signed_by(y.im, left != below)};
}

ORX_ISA_END
