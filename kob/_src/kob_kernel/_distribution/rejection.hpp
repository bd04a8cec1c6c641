// Rejection by blocks: a block of tries is worked on as a whole, and what is accepted moves up.
#pragma once

#include "distribution.hpp"
#include "selection.hpp"

namespace orx::rng {

// Fills r with n accepted numbers. try_block(count, x, margin) makes `count` tries: x[i] is accepted when margin[i]
// is not negative. What was accepted stays in the order of its tries, since the order may hang on the numbers
// themselves otherwise. There are never more tries in a block than numbers wanted, so that none is lost.
template <class Number, class TryBlock>
[[gnu::always_inline]] inline int by_rejection(int n, Number* r, int most, const TryBlock& try_block) {
  Number x[kBlock];
  double margin[kBlock];
  for (int done = 0; done < n;) {
    const int count = std::min(n - done, most);
    const int status = try_block(count, x, margin);
    if (status < 0) return status;
    const int accepted = keep_accepted(margin, count, x);
    std::copy_n(x, accepted, r + done);
    done += accepted;
  }
  return KOB_STATUS_OK;
}

// With a shape that is no positive number rejection might go on for ever.
inline bool is_shape(double x) { return x > 0 && x < __builtin_inf(); }

// e^(2 x) for half of an exponent, 0 where it is too small for any double: without the rare path that e^x itself
// takes near the end of its range. Overwrites x.
template <class Real>
void exp_of_halves(const VectorMath& math, int count, Real* x) {
  constexpr Real lowest = sizeof(Real) == 8 ? -700 : -80, highest = sizeof(Real) == 8 ? 350 : 44;
  for (int i = 0; i < count; ++i) x[i] = std::min(std::max(x[i], lowest), highest);
  math.exp(count, x, x);
  for (int i = 0; i < count; ++i) x[i] *= x[i];
}

}  // namespace orx::rng
