// The knots of a Subbotin spline. Knot i + 1 lies between breakpoints i and i + 1; knots 0 and nx are the
// outer breakpoints.
#pragma once

#include "_service/builder.hpp"

namespace orx::df {

enum SubgridForm { kNoUniformSubgrid, kUniformSubgrid };

// The inner knots as the task has them: given one by one, as the ends of an even row, or not at all, which
// puts them in the middle.
template <class Real>
class InnerKnots {
 public:
  explicit InnerKnots(const Task<Real>* task) : given_(task->intConds) {
    const Index inner = task->size() - 1;
    if (given_ && (task->intCondKind & ORX_DF_UNIFORM_KNOTS)) {
      even_ = true;
      step_ = inner > 1 ? (given_[1] - given_[0]) / Real(inner - 1) : 0;
    }
  }
  // The knot between breakpoints `left` = x[i] and `right` = x[i+1].
  Real between(Index i, Real left, Real right) const {
    if (!given_) return Real(0.5) * (left + right);
    return even_ ? given_[0] + Real(i) * step_ : given_[i + 1];
  }

 private:
  const Real* given_;
  bool even_ = false;
  Real step_ = 0;
};

// Fills knots[0 .. nx]; false when given knots do not lie one between each two breakpoints.
template <SubgridForm K, class Real, Partition G>
[[gnu::noinline]] bool make_subgrid(const Task<Real>* task, Real* knots) {
  const Index n = task->size();
  const Grid<Real, G> grid(task);
  const InnerKnots<Real> inner(task);
  const Real* given = task->intConds;
  const Real first = task->grid[0], last = task->last();
  knots[0] = first;
  knots[n] = last;
  for (Index i = 0; i + 1 < n; ++i) knots[i + 1] = inner.between(i, grid.x(i), grid.x(i + 1));
  if (!given) return true;
  if constexpr (K == kUniformSubgrid) {
    if (!(given[0] > first && given[1] < last)) return false;
  } else {
    if (given[0] != first || given[n] != last) return false;
  }
  for (Index i = 0; i + 1 < n; ++i)
    if (!(grid.x(i) < knots[i + 1] && knots[i + 1] < grid.x(i + 1))) return false;
  return true;
}

}  // namespace orx::df
