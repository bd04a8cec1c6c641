// Inversion of discrete laws: a table of cumulative probabilities from 0 on, and beyond its end a search term by
// term. A law tells its first probability, its last number, and f(k) / f(k - 1):
//
//   struct Law { double first, last;  double ratio(double k) const; };
#pragma once

#include "distribution.hpp"

namespace orx::rng {

// Sums f(0) + ... + f(k) for k below `length`. From the law's last number on they exceed every uniform, whatever
// rounding did before.
template <class Law>
void tabulate(const Law& law, double* sums, int length) {
  double term = law.first, sum = 0;
  for (int k = 0; k < length; ++k) {
    if (k > 0) term *= law.ratio(k);
    sum += term;
    sums[k] = k < law.last ? sum : 2;
  }
}

// The first k whose sum exceeds u, by the recursion alone. Rounding can leave the sum of all terms below u: the
// search ends where terms no longer count.
template <class Law>
double search_on(const Law& law, double u) {
  double k = 0, term = law.first, sum = term;
  while (sum <= u && k < law.last) {
    const double next = term * law.ratio(k + 1);
    if (next < term && sum + next == sum) break;
    ++k;
    sum += term = next;
  }
  return k;
}

// For many numbers: from a cell of [0, 1) to the first sum above the cell's lower end.
class GuidedTable {
 public:
  static constexpr int kMost = 254, kWorthwhile = 200;  // entries; numbers for which it is worth making

  GuidedTable(const double* sums, int length) : length_(length) {
    std::copy_n(sums, length, sums_);
    sums_[length] = sums_[length + 1] = 2;
    int k = 0;
    for (int cell = 0; cell < kCells; ++cell) {
      while (sums_[k] <= cell * (1.0 / kCells)) ++k;
      first_[cell] = uint8_t(k);
    }
  }
  // The first k whose sum exceeds u, the length when there is none. Two steps without a branch are mostly enough.
  int search(double u) const {
    int k = first_[int(u * kCells)];
    k += sums_[k] <= u;
    k += sums_[k] <= u;
    while (__builtin_expect(sums_[k] <= u, 0)) ++k;
    return k;
  }

 private:
  static constexpr int kCells = 1024;
  double sums_[kMost + 2];
  uint8_t first_[kCells];
  int length_;
};

// The same for few: from `start`, where most of the probability lies.
inline int search_from(const double* sums, int length, int start, double u) {
  int k = std::min(start, length - 1);
  if (sums[k] > u) {
    while (k > 0 && sums[k - 1] > u) --k;
    return k;
  }
  while (k < length && sums[k] <= u) ++k;
  return k;
}

// n numbers to r, as finish(k). `sums` is the law's table; law() makes the law when a number lies beyond it.
template <class MakeLaw, class Finish>
int by_inversion(KobStream* stream, int n, int32_t* r, const MakeLaw& law, const double* sums, int length,
                 int start, const Finish& finish) {
  const auto draw = [&](const auto& search) {
    return in_blocks(n, [&](int done, int count) {
      double u[kBlock];
      const int status = uniform(stream, count, u);
      if (status < 0) return status;
      for (int i = 0; i < count; ++i) {
        // Some generators round their largest numbers to 1.
        const double below_one = std::min(u[i], 1 - 0x1p-53);
        const int k = search(below_one);
        r[done + i] = finish(__builtin_expect(k < length, 1) ? k : search_on(law(), below_one));
      }
      return status;
    });
  };
  if (n < GuidedTable::kWorthwhile)
    return draw([&](double u) { return search_from(sums, length, start, u); });
  const GuidedTable table(sums, length);
  return draw([&](double u) { return table.search(u); });
}

}  // namespace orx::rng
