// What asinh and acosh of double precision share.
//
// The argument lies in a cell, 32 to each power of two, with the middle c. By the addition theorem the function of x is
//
//   T + asinh d,   T that of c,   d = sinh(the difference) = (x^2 - c^2)/(a sum without cancellation),
//
// and asinh d is a small part of the sum, so that its rounding errors do not count. Where x is near the function's zero c is
// put there: T is 0 then, and the polynomial of asinh d, which reaches that far, is the result. Large arguments go by the
// logarithm.
#pragma once
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)

struct InverseCellsData {
  Row<uint64_t> cell = 0xFFFF800000000000,
                middle = 0x0000400000000000;     // the bits that a cell shares, and the next
  Row<uint64_t> row = 0x03FF800000000000;        // those that tell its row
  Row<double> usual_to = 0x1.fffffffffffffp+26;  // behind it 1 does not matter under the root
  Row<double> largest = DBL_MAX, one = 1.0;
  // (asinh d - d) / d^3, |d| <= 1/64: to 2^-59.8 of asinh d, and to 2^-30.2 of asinh d
  Row<double> c[3] = {-0x1.55555555549ecp-3, 0x1.333332a8af95dp-4, -0x1.6d98fc1fe5445p-5};
  Row<double> ep = -0x1.554d61a777aacp-3;
};
inline constexpr InverseCellsData kInverseCells{};

// The cell of a positive number; below `from`, the power of two where the cells begin, c is 0. Its table has rows of two or
// four columns.
template <int columns, class X>
struct InverseCell {
  X c;
  SpilledWords<X> words;

  InverseCell(X x, const Row<double>& from, const Row<double>& below)
      : c(keep(not_below(x, from),
               bit_or(bit_and(x, kInverseCells.cell), constant<X>(kInverseCells.middle)))),
        words(bit_and(max(x, below), kInverseCells.row)) {}

  // Where the cell's row begins.
  int operator()(int lane) const { return words.high(lane) >> (columns == 4 ? 13 : 14); }
};

// What asinh d has beyond d; d is 0 where it is so small that its square would underflow.
template <bool ep, class X>
inline X asinh_rest(X d) {
  const X d2 = d * d;
  if constexpr (ep)
    return (d * d2) * kInverseCells.ep;
  else
    return (d * d2) * horner(d2, kInverseCells.c);
}

// ln(2 x), for large x in the lanes of the mask.
template <class X>
inline X log_of_twice(X large, X x) {
  const X v = select(large, x, constant<X>(kInverseCells.one));
  return LogHA<LnDescription>::log(v, exponent_field(v) + kInverseCells.one);
}

ORX_ISA_END
