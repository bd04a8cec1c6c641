// Sums of whole pieces, for many intervals that reach over many pieces: every piece is integrated once, and what
// lies between two pieces is the difference of two sums.
//
// A sum of n terms is kept as a double and the sum of that double's rounding errors (T. Ogita, S. M. Rump, S.
// Oishi, Accurate sum and dot product, SIAM J. Sci. Comput. 26, 2005), so that its error is some n 2^-106 of the
// greatest sum. Where a difference is so small beside the greatest sum that this shows, the pieces between are
// added one by one after all.
#pragma once

#include <algorithm>
#include <cstdint>

#include "_service/task.hpp"

namespace orx::df {

// The sums of one function: at p, of pieces 1 to p - 1. The first and the last piece have no end of their own.
class PieceSums {
 public:
  // How many doubles the sums of a function with pieces 0 to `last` take.
  static Index room(Index last) { return 2 * (last + 1); }

  PieceSums() = default;
  PieceSums(double* memory, Index last) : high_(memory), low_(memory + last + 1) {}

  template <class Pieces>
  void add_up(const Pieces& pieces) {
    const int32_t last = pieces.last();
    double sum = 0, error = 0, greatest = 0;
    high_[1] = low_[1] = 0;
    for (int32_t p = 1; p < last; ++p) {
      const double piece = pieces.whole(p), next = sum + piece, taken = next - sum;
      error += (sum - (next - taken)) + (piece - taken);
      sum = next;
      greatest = std::max(greatest, __builtin_fabs(sum));
      high_[p + 1] = sum;
      low_[p + 1] = error;
    }
    high_[0] = last * greatest;
  }

  // The sum of the pieces between two, if it can be trusted to the digits of a Real.
  template <class Real>
  bool between(int32_t first, int32_t last, Real* sum) const {
    constexpr double digits = sizeof(Real) == sizeof(double) ? 0x1p-51 : 0x1p-80;
    const double difference = (high_[last] - high_[first + 1]) + (low_[last] - low_[first + 1]);
    *sum = Real(difference);
    return __builtin_fabs(difference) >= high_[0] * digits;
  }

 private:
  double *high_ = nullptr, *low_ = nullptr;  // high_[0]: the count of pieces times the greatest sum
};

}  // namespace orx::df
