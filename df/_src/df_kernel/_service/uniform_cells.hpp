// The cells of a uniform partition.
#pragma once

#include <cstdint>
#include <limits>

#include "_service/vectors.hpp"

namespace orx::df {

// Cells of a uniform partition by division, which rounding may put on the wrong side of a breakpoint. The guess
// is therefore made a little too low, by more than rounding can make it too high, and one comparison with the
// next breakpoint, as evaluation computes it, settles it. The right end counts as it is given: mostly the last
// breakpoint, computed like the others, meets it; where it does not, sites are compared with both.
template <class Real>
class UniformCells {
 public:
  UniformCells() = default;
  // reciprocal_step = (nx - 1) / (last - first).
  UniformCells(int32_t nx, Real first, Real last, Real reciprocal_step)
      : first_(first),
        last_(last),
        step_((last - first) / Real(nx - 1)),
        reciprocal_(smaller(reciprocal_step * (1 - 8 * kEpsilon), std::numeric_limits<Real>::max())),
        last_polynomial_(Real(nx - 2)),
        last_inner_(breakpoint(last_polynomial_)),
        nx_(nx) {}
  UniformCells(int32_t nx, Real first, Real last)
      : UniformCells(nx, first, last, Real(nx - 1) / (last - first)) {}

  // Breakpoint i as evaluation computes it.
  template <class T>
  T breakpoint(T i) const {
    return first_ + i * step_;
  }
  bool made_of(int64_t nx, const Real* ends) const {
    return nx_ == nx && first_ == ends[0] && last_ == ends[1];
  }
  bool ends_meet() const {
    return breakpoint(Real(nx_ - 1)) == last_ && reciprocal_ < std::numeric_limits<Real>::max();
  }
  // The cell, for a number or a vector of them; 0 for what is not a number.
  template <bool kEndsMeet, class T>
  T of(T s) const {
    const T cell = inner(s, kEndsMeet ? last_ : last_inner_);
    return kEndsMeet ? cell : greater(cell, where_at_most(spread<T>(last_), s, spread<T>(Real(nx_))));
  }
  // The polynomial that serves a site, for a number or a vector of them.
  template <class T>
  T polynomial(T s) const {
    return smaller(greater(inner(s, last_inner_) - 1, T{}), spread<T>(last_polynomial_));
  }
  // The cell of a single site: branches are foretold, so that what follows need not wait for the comparisons.
  int32_t of_one(const Real& s) const {
    if (!(s >= first_)) return 0;
    if (s >= last_) return nx_;
    const auto k = int32_t(greater((smaller(last_inner_, s) - first_) * reciprocal_ + kBelowOne, Real(0)));
    return s < breakpoint(Real(k)) ? k : k + 1;
  }

 private:
  // The cell of a site, or of the greatest that is looked at.
  template <class T>
  T inner(T s, Real greatest) const {
    const T within = smaller(spread<T>(greatest), s);
    const T k = round_down(greater((within - first_) * reciprocal_ + kBelowOne, T{}));
    return k + ones_at_most(breakpoint(k), within);
  }

  static constexpr Real kEpsilon = std::numeric_limits<Real>::epsilon();
  static constexpr Real kBelowOne = 1 - kEpsilon / 2;

  Real first_, last_, step_, reciprocal_, last_polynomial_, last_inner_;
  int32_t nx_;
};

}  // namespace orx::df
