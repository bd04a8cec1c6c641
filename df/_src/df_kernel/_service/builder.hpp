// What the builders have in common: access to breakpoints and values in either form, checks, the numbers of
// the dispatch tables, and the lists from which the variants are made.
#pragma once

#include <algorithm>
#include <cstdint>

#include "_service/checks.hpp"
#include "_service/task.hpp"
#include "_service/vectors.hpp"
#include "orx/base/threading.hpp"

namespace orx::df {

enum Storage { kYCols, kYRows };
enum Partition { kNoUniformGrid, kUniformGrid };
enum class End { NotAKnot, FreeEnd, First, Second, Periodic, NotSet };

// The boundary kinds by their numbers in the tables.
struct Boundary {
  int64_t kind;
  End left, right;
};
constexpr Boundary kBoundaries[] = {
    {ORX_DF_NOT_A_KNOT, End::NotAKnot, End::NotAKnot},
    {ORX_DF_FREE_END, End::FreeEnd, End::FreeEnd},
    {ORX_DF_FIRST_LEFT | ORX_DF_FIRST_RIGHT, End::First, End::First},
    {ORX_DF_FIRST_LEFT | ORX_DF_SECOND_RIGHT, End::First, End::Second},
    {ORX_DF_SECOND_LEFT | ORX_DF_FIRST_RIGHT, End::Second, End::First},
    {ORX_DF_SECOND_LEFT | ORX_DF_SECOND_RIGHT, End::Second, End::Second},
    {ORX_DF_PERIODIC, End::Periodic, End::Periodic},
};
enum BoundaryNumber {
  kBoundaryNotAKnot,
  kBoundaryFreeEnd,
  kBoundary1st1st,
  kBoundary1st2nd,
  kBoundary2nd1st,
  kBoundary2nd2nd,
  kBoundaryPeriodic,
  kBoundaryCount,
  kBoundaryNotSet = kBoundaryCount
};

// Lists for macros, in the order of the dispatch tables.
#define ORX_DF_VARIANTS(V) \
  V(YCols, NoUniformGrid) V(YCols, UniformGrid) V(YRows, NoUniformGrid) V(YRows, UniformGrid)
#define ORX_DF_BOUNDARIES(V, S, G) \
  V(S, G, NotAKnot)                \
  V(S, G, FreeEnd) V(S, G, 1st1st) V(S, G, 1st2nd) V(S, G, 2nd1st) V(S, G, 2nd2nd) V(S, G, Periodic)
#define ORX_DF_BOUNDARY_VARIANTS(V)          \
  ORX_DF_BOUNDARIES(V, YCols, NoUniformGrid) \
  ORX_DF_BOUNDARIES(V, YCols, UniformGrid)   \
  ORX_DF_BOUNDARIES(V, YRows, NoUniformGrid) ORX_DF_BOUNDARIES(V, YRows, UniformGrid)

template <class Real>
using Builder = int32_t(const Task<Real>* task, const ThreadingServices* threading);

template <class Real>
int variant_number(const Task<Real>* task) {
  return 2 * (task->funcHint != ORX_DF_COLUMNS) + ((task->gridHint & ORX_DF_UNIFORM_PARTITION) != 0);
}

template <class Real>
int32_t check_func_hint(const Task<Real>* task) {
  const int64_t hint = task->funcHint;
  const bool known =
      hint == ORX_DF_NO_HINT || hint == ORX_DF_ROWS || hint == ORX_DF_COLUMNS || hint == ORX_DF_FIRST_ONLY;
  return known ? ORX_DF_OK : ORX_DF_ERROR_FUNC_HINT;
}

// The number of the task's boundary kind, or a status.
template <class Real>
int32_t boundary_number(const Task<Real>* task) {
  for (int32_t number = 0; number < kBoundaryCount; ++number) {
    if (kBoundaries[number].kind != task->bndCondKind) continue;
    const bool two_sided = number >= kBoundary1st1st && number <= kBoundary2nd2nd;
    return two_sided && !task->bndConds ? ORX_DF_ERROR_BND_CONDS : number;
  }
  return ORX_DF_ERROR_BND_COND_KIND;
}

// What differs between the builders of cubic splines in what they ask of a task.
struct CubicNeeds {
  int64_t breakpoints;  // at least
  bool inner_values;    // conditions at the inner breakpoints, and one for a periodic end
  bool open_ends;       // whether there need be no boundary conditions
};

// The boundary number for a cubic spline, or a status when the task is not ready for its builder. A task said
// to be a default or Hermite spline has a value for a periodic end, whoever builds it.
template <class Real>
int32_t cubic_boundary_number(const Task<Real>* task, const CubicNeeds& needs) {
  if (!task) return ORX_DF_ERROR_TASK;
  if (task->gridSize < needs.breakpoints) return ORX_DF_ERROR_GRID_SIZE;
  if (const int32_t bad = check_func_hint(task)) return bad;
  const int32_t number =
      needs.open_ends && task->bndCondKind == 0 ? int32_t(kBoundaryNotSet) : boundary_number(task);
  if (number < 0) return number;
  const bool periodic = number == kBoundaryPeriodic;
  const bool has_value = task->splineKind == ORX_DF_DEFAULT || task->splineKind == ORX_DF_HERMITE;
  if (periodic && has_value && !task->bndConds) return ORX_DF_ERROR_BND_CONDS;
  if (const int32_t bad = check_construction(task, ORX_DF_CUBIC)) return bad;
  if (needs.inner_values && periodic && !task->bndConds) return ORX_DF_ERROR_BND_CONDS;
  return needs.inner_values && !task->intConds ? int32_t(ORX_DF_ERROR_INT_CONDS) : number;
}

// Breakpoints: h(i) is the width of cell i, inverse(i) its reciprocal; vectors take a cell for each lane.
template <class Real, Partition G>
class Grid;

template <class Real>
class Grid<Real, kNoUniformGrid> {
 public:
  explicit Grid(const Task<Real>* task) : x_(task->grid) {}
  Real x(Index i) const { return x_[i]; }
  Real h(Index i) const { return x_[i + 1] - x_[i]; }
  Real inverse(Index i) const { return 1 / h(i); }
  Vec<Real> widths(Index i) const { return load(x_ + i + 1) - load(x_ + i); }
  Vec<Real> inverses(Index i) const { return broadcast(Real(1)) / widths(i); }

 private:
  const Real* x_;
};

template <class Real>
class Grid<Real, kUniformGrid> {
 public:
  explicit Grid(const Task<Real>* task)
      : first_(task->grid[0]),
        h_((task->grid[1] - task->grid[0]) / Real(int32_t(task->gridSize) - 1)),
        inverse_(Real(int32_t(task->gridSize) - 1) / (task->grid[1] - task->grid[0])) {}
  Real x(Index i) const { return first_ + Real(i) * h_; }
  Real h(Index = 0) const { return h_; }
  Real inverse(Index = 0) const { return inverse_; }
  Vec<Real> inverses(Index) const { return broadcast(inverse_); }

 private:
  Real first_, h_, inverse_;
};

// The values of one function.
template <class Real, Storage S>
class Values;

template <class Real>
class Values<Real, kYRows> {
 public:
  Values(const Task<Real>* task, Index function) : y_(task->funcs[function]) {}
  Real operator[](Index k) const { return y_[k]; }
  Vec<Real> vector(Index k) const { return load(y_ + k); }

 private:
  const Real* y_;
};

template <class Real>
class Values<Real, kYCols> {
 public:
  Values(const Task<Real>* task, Index function)
      : y_(task->funcs[0] + function), stride_(std::max<Index>(task->functions(), 1)) {}
  Real operator[](Index k) const { return y_[k * stride_]; }
  Vec<Real> vector(Index k) const {
    Vec<Real> v;
    for (int i = 0; i < kLanes<Real>; ++i) v[i] = (*this)[k + i];
    return v;
  }

 private:
  const Real* y_;
  Index stride_;
};

inline Index ceiling_quotient(Index a, Index b) { return (a + b - 1) / b; }

}  // namespace orx::df
