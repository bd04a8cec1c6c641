// A spline as pieces that follow each other along the line: for each kind where a piece begins, which one
// serves a site of a given cell, and its integral. The first piece reaches to minus, the last to plus
// infinity.
#pragma once

#include <algorithm>
#include <cstdint>

#include "_service/builder.hpp"
#include "_service/polynomial.hpp"
#include "_service/samples.hpp"
#include "_service/subgrid.hpp"
#include "integr1d/sums.hpp"

namespace orx::df {

// The antiderivative that is 0 at t = 0.
template <int kOrder, class Real>
Real antiderivative(const Real* c, Real t) {
  constexpr Real factor[] = {1, Real(0.5), Real(0.3333333333333333), Real(0.25)};
  Real sum = c[kOrder - 1] * factor[kOrder - 1];
  for (int k = kOrder - 2; k >= 0; --k) sum = sum * t + c[k] * factor[k];
  return sum * t;
}

template <class Real, Partition G, int kOrder>
class PolynomialPieces {
 public:
  PolynomialPieces(const Task<Real>* task, Index function)
      : grid_(task), coeffs_(task->coeffs[function]), nx_(int32_t(task->gridSize)) {}
  int32_t of(int32_t cell, Real) const { return polynomial_of_cell(cell, nx_); }
  int32_t last() const { return nx_ - 2; }
  Real begin(int32_t p) const { return grid_.x(p); }
  Real part(int32_t p, Real a, Real b) const {
    const Real* c = coeffs_ + Index(p) * kOrder;
    const Real base = grid_.x(p);
    return antiderivative<kOrder>(c, b - base) - antiderivative<kOrder>(c, a - base);
  }
  Real whole(int32_t p) const { return antiderivative<kOrder>(coeffs_ + Index(p) * kOrder, grid_.h(p)); }

 private:
  Grid<Real, G> grid_;
  const Real* coeffs_;
  int32_t nx_;
};

// Cells of any order. The divisions stay in the loop.
template <class Real, Partition G>
class ArbitraryPieces {
 public:
  ArbitraryPieces(const Task<Real>* task, Index function)
      : grid_(task),
        coeffs_(task->coeffs ? task->coeffs[function] : nullptr),  // none where call-backs do all
        order_(Index(task->splineOrder)),
        nx_(int32_t(task->gridSize)) {}
  int32_t of(int32_t cell, Real) const { return polynomial_of_cell(cell, nx_); }
  int32_t last() const { return nx_ - 2; }
  Real begin(int32_t p) const { return grid_.x(p); }
  Real part(int32_t p, Real a, Real b) const {
    return antiderivative_at(p, b - grid_.x(p)) - antiderivative_at(p, a - grid_.x(p));
  }
  Real whole(int32_t p) const { return antiderivative_at(p, grid_.h(p)); }

 private:
  Real antiderivative_at(int32_t p, Real t) const {
    const Real* c = coeffs_ + p * order_;
    Real sum = 0;
    for (Index k = order_; k > 0; --k) sum = sum * t + c[k - 1] / Real(k);
    return sum * t;
  }

  Grid<Real, G> grid_;
  const Real* coeffs_;
  Index order_;
  int32_t nx_;
};

// A Subbotin polynomial reaches from knot to knot, around the breakpoint that is its base.
template <class Real, Partition G>
class SubbotinPieces {
 public:
  SubbotinPieces(const Task<Real>* task, Index function)
      : grid_(task), knots_(task), coeffs_(task->coeffs[function]), nx_(int32_t(task->gridSize)) {}
  int32_t of(int32_t cell, Real site) const {
    const int32_t p = polynomial_of_cell(cell, nx_);
    return p + (site >= begin(p + 1));
  }
  int32_t last() const { return nx_ - 1; }
  Real begin(int32_t p) const {
    if (p == 0 || p == nx_) return grid_.x(p == 0 ? 0 : nx_ - 1);
    return knots_.between(p - 1, grid_.x(p - 1), grid_.x(p));
  }
  Real part(int32_t p, Real a, Real b) const {
    const Real* c = coeffs_ + Index(p) * 3;
    const Real base = grid_.x(p);
    return antiderivative<3>(c, b - base) - antiderivative<3>(c, a - base);
  }
  Real whole(int32_t p) const { return part(p, begin(p), begin(p + 1)); }

 private:
  Grid<Real, G> grid_;
  InnerKnots<Real> knots_;
  const Real* coeffs_;
  int32_t nx_;
};

// Steps. The right-continuous function has value y[p] from x[p] on; the left-continuous one y[p] up to x[p].
template <class Real, bool kLeftContinuous>
class StepPieces {
 public:
  StepPieces(const Task<Real>* task, Index function) : samples_(task, function) {}
  int32_t of(int32_t cell, Real) const {
    return kLeftContinuous ? std::min(cell, int32_t(samples_.nx - 1)) : std::max(cell - 1, 0);
  }
  int32_t last() const { return int32_t(samples_.nx - 1); }
  Real begin(int32_t p) const { return samples_.x(p - kLeftContinuous); }
  Real part(int32_t p, Real a, Real b) const { return samples_.y(p) * (b - a); }
  Real whole(int32_t p) const { return part(p, begin(p), begin(p + 1)); }

 private:
  Samples<Real> samples_;
};

// From a to b, a <= b, which lie in the given cells. `sums` may be null.
template <class Real, class Pieces>
Real integrate_pieces(const Pieces& pieces, const PieceSums* sums, Real a, int32_t cell_a, Real b,
                      int32_t cell_b) {
  constexpr int32_t quickly_added = 4;
  const int32_t first = pieces.of(cell_a, a), last = pieces.of(cell_b, b);
  if (first == last) return pieces.part(first, a, b);
  Real sum = pieces.part(first, a, pieces.begin(first + 1)), between;
  if (sums && last - first > quickly_added && sums->between(first, last, &between))
    sum += between;
  else
    for (int32_t p = first + 1; p < last; ++p) sum += pieces.whole(p);
  return sum + pieces.part(last, pieces.begin(last), b);
}

}  // namespace orx::df
