// The local cubic builders: Hermite, Bessel and Akima. The derivative at an inner breakpoint comes from a few
// slopes around it, so that strips of eight cells are independent of each other. The builders differ in their
// Rule:
//   kReach      how many cells beyond a strip its derivatives and ends look at, on either side
//   kRowUnit    a worker's scratch row is 3 of these long on a uniform grid, else 5; 1 more for columns
//   inner(v)    the derivative at an inner breakpoint, of what the View v shows
// and in what a periodic end is. ORX_DF_LOCAL_FAMILY makes a builder's variants of its Rule.
#pragma once

#include "_service/builder.hpp"
#include "_service/hermite_form.hpp"
#include "orx/base/memory.hpp"

namespace orx::df {

constexpr Index kLocalTileCells = 2048, kLocalTileFunctions = 4, kLocalLeastValues = 512;
constexpr int kStrip = 8;

// What an end routine gets. h and m hold widths and slopes of the cells around the end, d the derivatives at
// their left breakpoints: `cell` is the place of the outermost cell in these arrays. On a uniform grid there
// is no h.
template <class Real>
struct EndArgs {
  int64_t nx, func_count, grid_hint, func_hint;
  const Real* grid;
  const Real* const* funcs;
  const Real* bnd_conds;
  Index function, cell;
  const Real* h;
  Real inverse;
  const Real* m;
  Real* d;
};

template <class Real>
using EndRoutine = void(const EndArgs<Real>& a);

// The end routines by what they say of the end, for both sides: kStep is 1 at the left end and -1 at the
// right one.
template <class Real, int kStep>
struct EndRules {
  using Args = EndArgs<Real>;
  static constexpr bool kRight = kStep < 0;
  static Real& outer(const Args& a) { return a.d[a.cell + kRight]; }
  static Real inner(const Args& a) { return a.d[a.cell + !kRight]; }
  static Real m(const Args& a, int k) { return a.m[a.cell + k * kStep]; }
  static bool uniform(const Args& a) { return a.grid_hint & ORX_DF_UNIFORM_PARTITION; }
  static Real h(const Args& a, int k) { return uniform(a) ? 1 / a.inverse : a.h[a.cell + k * kStep]; }

  static void first(const Args& a) { outer(a) = a.bnd_conds[kRight]; }
  static void free_end(const Args& a) { outer(a) = Real(1.5) * m(a, 0) - Real(0.5) * inner(a); }
  static void second(const Args& a) {
    outer(a) =
        Real(1.5) * m(a, 0) - kStep * Real(0.25) * a.bnd_conds[kRight] * h(a, 0) - Real(0.5) * inner(a);
  }
  static void not_a_knot(const Args& a) {
    if (uniform(a)) {
      outer(a) = Real(0.5) * (m(a, 0) + m(a, 1)) - 2 * inner(a);
      return;
    }
    const Real own = h(a, 0), next = h(a, 1), both = own + next;
    outer(a) = ((own * own * m(a, 1) + (own + 2 * both) * next * m(a, 0)) / both - both * inner(a)) / next;
  }
  static void periodic_given(const Args& a) { outer(a) = a.bnd_conds[0]; }
  // The Bessel derivative across the seam.
  static void periodic(const Args& a) {
    const auto n = Index(a.nx);
    const auto y = [&](Index k) {
      return a.func_hint == ORX_DF_COLUMNS
                 ? a.funcs[0][k * std::max(Index(a.func_count), Index(1)) + a.function]
                 : a.funcs[a.function][k];
    };
    const Real rise = y(1) - y(0), rise_last = y(n - 1) - y(n - 2);
    if (uniform(a)) {
      outer(a) = Real(0.5) * a.inverse * (rise + rise_last);
      return;
    }
    const Real h = a.grid[1] - a.grid[0], h_last = a.grid[n - 1] - a.grid[n - 2];
    outer(a) = (h_last * (rise / h) + h * (rise_last / h_last)) / (h + h_last);
  }
  static void not_set(const Args&) {}
};

// What a rule sees from inner breakpoint i: slopes and widths of the cells around it, m(0) and h(0) being
// those of the cell to its right. T is a Real, or a vector that holds what i, i + 1, ... see.
template <class T, class Real, Partition G>
struct View {
  using Number = T;
  static constexpr bool kUniform = G == kUniformGrid;
  const T *slopes, *widths;
  const Task<Real>* task;
  Index i;

  T m(int j) const { return slopes[j]; }
  T h(int j) const { return widths[j]; }
  T given() const { return read<T>(task->intConds + i - 1); }
  // The breakpoints next to the ends; vectors stay out of their reach.
  bool second() const { return sizeof(T) == sizeof(Real) && i == 1; }
  bool last_but_one() const { return sizeof(T) == sizeof(Real) && i == task->size() - 2; }
};

// A function's cells go from left to right. Around the ends they are worked on in strips, with windows in the
// worker's scratch row, counted from the strip's first cell: slopes m and, on a non-uniform grid, widths h
// from -kReach to kStrip + kReach - 1, derivatives d from 0 to kStrip. Between the ends they go by vectors,
// which keep what neighbours share in registers.
template <class Real, class Rule, Storage S, Partition G>
class LocalCubic {
  static constexpr int kReach = Rule::kReach, kSlopes = kStrip + 2 * kReach, kDerivatives = kStrip + 1;
  static constexpr Index kRowLength = Rule::kRowUnit * ((G == kUniformGrid ? 3 : 5) + (S == kYCols));
  static_assert((G == kUniformGrid ? 1 : 2) * kSlopes + kDerivatives <= kRowLength);

 public:
  struct Work {
    const Task<Real>* task;
    EndRoutine<Real>*left, *right;
    Index across;  // tiles along the grid
    Real* rows;
  };

  static void worker(int i, int t, void* args) {
    const auto& w = *static_cast<Work*>(args);
    const Index group = i / w.across * kLocalTileFunctions, from = i % w.across * kLocalTileCells;
    // The tiles are counted without the outer two cells; the last one takes what is left.
    const Index to = i % w.across == w.across - 1 ? w.task->size() - 1 : from + kLocalTileCells;
    for (Index f = group; f < std::min(group + kLocalTileFunctions, w.task->functions()); ++f)
      LocalCubic(w, f, w.rows + t * kRowLength).build_cells(from, to);
  }

  static int32_t build(const Task<Real>* task, EndRoutine<Real>* left, EndRoutine<Real>* right,
                       const ThreadingServices* threading, orx_worker threader) {
    const Index n = task->size(), count = task->functions();
    const Index across = std::max<Index>(ceiling_quotient(n - 3, kLocalTileCells), 1);
    const auto items = int32_t(across * ceiling_quotient(count, kLocalTileFunctions));
    const int32_t threads = std::max(1, std::min(threading->maxThreads(), items));
    const Block<Real> rows(threads * kRowLength);
    if (!rows) return ORX_DF_ERROR_MEMORY;
    Work work{task, left, right, across, rows.get()};
    if (n * count < kLocalLeastValues)
      for (Index f = 0; f < count; ++f) LocalCubic(work, f, work.rows).build_cells(0, n - 1);
    else
      threading->parallelFor(items, threads, &work, threader);
    return ORX_DF_OK;
  }

 private:
  LocalCubic(const Work& work, Index function, Real* row)
      : work_(work),
        task_(work.task),
        function_(function),
        grid_(task_),
        y_(task_, function),
        coeffs_(task_->coeffs[function]),
        m_(row + kReach),
        d_(row + kSlopes),
        h_(row + kSlopes + kDerivatives + kReach) {}

  void build_cells(Index from, Index to) {
    Index i = from > 0 ? from : write_strip(0, to);
    i = write_vectors(i, to);
    while (i < to) i = write_strip(i, to);
  }

  // Up to kStrip cells, element by element. Returns where they end, as the next function does.
  Index write_strip(Index first, Index to) {
    const Index count = std::min<Index>(kStrip, to - first);
    const Index last_cell = task_->size() - 2 - first;  // in the strip's own count, as all that follows
    for (Index k = -std::min<Index>(first, kReach); k <= std::min(count + kReach - 1, last_cell); ++k) {
      if constexpr (G == kNoUniformGrid) h_[k] = grid_.h(first + k);
      m_[k] = (y_[first + k + 1] - y_[first + k]) * grid_.inverse(first + k);
    }
    for (Index k = first == 0; k <= std::min(count, last_cell); ++k)
      d_[k] = Rule::inner(View<Real, Real, G>{m_ + k, h_ + k, task_, first + k});
    if (first == 0) left_end();
    if (count - 1 == last_cell) right_end(last_cell);
    write_hermite_cells(y_, grid_, d_, first, first + count, coeffs_);
    return first + count;
  }

  using V = Vec<Real>;
  struct Cells {
    V slopes, inverses;  // of as many cells as a vector has lanes
  };
  struct Points {
    V d;          // the derivatives at as many breakpoints,
    Cells right;  // and the cells to their right
  };

  Cells cells_from(Index i) const {
    const V inverses = grid_.inverses(i);
    return {(y_.vector(i + 1) - y_.vector(i)) * inverses, inverses};
  }

  // `low` and `high` hold the cells from i - kReach on.
  template <std::size_t... k>
  Points points_from(Index i, const Cells& low, const Cells& high, std::index_sequence<k...>) const {
    const V slopes[] = {shifted<int(k)>(low.slopes, high.slopes)...};
    V widths[2 * kReach];
    if constexpr (G == kNoUniformGrid)
      for (int j = 0; j < 2 * kReach; ++j) widths[j] = grid_.widths(i - kReach + j);
    return {Rule::inner(View<V, Real, G>{slopes + kReach, widths + kReach, task_, i}),
            {slopes[kReach], shifted<kReach>(low.inverses, high.inverses)}};
  }

  // Cells that are away from the ends, a vector of them at a time.
  Index write_vectors(Index i, Index to) const {
    constexpr int step = kLanes<Real>;
    constexpr auto around = std::make_index_sequence<2 * kReach>();
    // Two more vectors of cells, less the reach, are looked at beyond those that are written.
    to = std::min(to, task_->size() - 1 + kReach - 2 * step);
    if (i + step > to) return i;
    Cells low = cells_from(i - kReach), high = cells_from(i - kReach + step);
    Points points = points_from(i, low, high, around);
    for (; i + step <= to; i += step) {
      low = high;
      high = cells_from(i - kReach + 2 * step);
      const Points next = points_from(i + step, low, high, around);
      const HermiteCell<V> cell(y_.vector(i), points.right.slopes, points.d, shifted<1>(points.d, next.d),
                                points.right.inverses);
      store_rows(coeffs_ + 4 * i, cell.c[0], cell.c[1], cell.c[2], cell.c[3]);
      points = next;
    }
    return i;
  }

  EndArgs<Real> end_args(Index cell) const {
    return {task_->gridSize,
            task_->funcCount,
            task_->gridHint,
            task_->funcHint,
            task_->grid,
            task_->funcs,
            task_->bndConds,
            function_,
            cell,
            h_,
            grid_.inverse(0),
            m_,
            d_};
  }

  // Where no condition is set, an end keeps what stood in the coefficients, the other one what its neighbour
  // has.
  void left_end() {
    d_[0] = coeffs_[1];
    work_.left(end_args(0));
  }
  void right_end(Index cell) {
    d_[cell + 1] = d_[cell];
    work_.right(end_args(cell));
  }

  const Work& work_;
  const Task<Real>* task_;
  Index function_;
  Grid<Real, G> grid_;
  Values<Real, S> y_;
  Real *coeffs_, *m_, *d_, *h_;
};

// The end routines of a family, the tables that hold them by boundary number, and the variants by storage and
// grid. Takes Real and <Family>Rule from where it stands; `periodic_rule` is the EndRules member for periodic
// splines.
#define ORX_DF_END_ROUTINE(Name, rule)                                                              \
  static void _vCubicSpline1DBC##Name##Left(const EndArgs<Real>& a) { EndRules<Real, 1>::rule(a); } \
  static void _vCubicSpline1DBC##Name##Right(const EndArgs<Real>& a) { EndRules<Real, -1>::rule(a); }
#define ORX_DF_END_TABLE(Side, First, Second)                                                          \
  EndRoutine<Real>* const _vCubicSpline1D##Side##BCDispatch[8] = {                                     \
      _vCubicSpline1DBCNotAKnot##Side, _vCubicSpline1DBCFreeEnd##Side,  _vCubicSpline1DBC1stDer##Side, \
      _vCubicSpline1DBC##First##Side,  _vCubicSpline1DBC##Second##Side, _vCubicSpline1DBC2ndDer##Side, \
      _vCubicSpline1DBCPeriodic##Side, _vCubicSpline1DBCNotSet##Side};
#define ORX_DF_LOCAL_VARIANT(Family, S, G)                                                                  \
  static void _v1DCS##Family##S##G##Threader(int i, int t, int, void* work) {                               \
    LocalCubic<Real, Family##Rule, k##S, k##G>::worker(i, t, work);                                         \
  }                                                                                                         \
  static int32_t _v1DCS##Family##S##G(const Task<Real>* task, int boundary,                                 \
                                      const ThreadingServices* threading) {                                 \
    return LocalCubic<Real, Family##Rule, k##S, k##G>::build(task, _vCubicSpline1DLeftBCDispatch[boundary], \
                                                             _vCubicSpline1DRightBCDispatch[boundary],      \
                                                             threading, _v1DCS##Family##S##G##Threader);    \
  }
#define ORX_DF_LOCAL_FAMILY(Family, periodic_rule)                          \
  extern "C" {                                                              \
  ORX_DF_END_ROUTINE(NotAKnot, not_a_knot)                                  \
  ORX_DF_END_ROUTINE(FreeEnd, free_end)                                     \
  ORX_DF_END_ROUTINE(1stDer, first)                                         \
  ORX_DF_END_ROUTINE(2ndDer, second)                                        \
  ORX_DF_END_ROUTINE(Periodic, periodic_rule)                               \
  ORX_DF_END_ROUTINE(NotSet, not_set)                                       \
  }                                                                         \
  ORX_DF_END_TABLE(Left, 1stDer, 2ndDer)                                    \
  ORX_DF_END_TABLE(Right, 2ndDer, 1stDer)                                   \
  extern "C" {                                                              \
  ORX_DF_LOCAL_VARIANT(Family, YCols, NoUniformGrid)                        \
  ORX_DF_LOCAL_VARIANT(Family, YCols, UniformGrid)                          \
  ORX_DF_LOCAL_VARIANT(Family, YRows, NoUniformGrid)                        \
  ORX_DF_LOCAL_VARIANT(Family, YRows, UniformGrid)                          \
  }                                                                         \
  LocalBuilder<Real>* const _Dispatch##Family[4] = {                        \
      _v1DCS##Family##YColsNoUniformGrid, _v1DCS##Family##YColsUniformGrid, \
      _v1DCS##Family##YRowsNoUniformGrid, _v1DCS##Family##YRowsUniformGrid};

template <class Real>
using LocalBuilder = int32_t(const Task<Real>* task, int boundary, const ThreadingServices* threading);

// Checks the task and runs the variant for it.
template <class Real>
int32_t build_local(const Task<Real>* task, const CubicNeeds& needs, LocalBuilder<Real>* const* variants,
                    const ThreadingServices* threading) {
  const int32_t boundary = cubic_boundary_number(task, needs);
  return boundary < 0 ? boundary
                      : variants[variant_number(task)](task, boundary, threading_or_serial(threading));
}

}  // namespace orx::df
