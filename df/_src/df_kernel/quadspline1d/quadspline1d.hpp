// Quadratic splines: the standard one, with knots at the breakpoints, and Subbotin's, with knots between
// them.
#include <algorithm>

#include "_service/builder.hpp"
#include "_service/solver.hpp"
#include "_service/subgrid.hpp"
#include "orx/base/memory.hpp"

namespace {
using namespace orx::df;

constexpr Index kMaxStackSize = 4095;

template <Storage S, Partition G>
struct StandardSpline {
  // The values in the middle of the cells. The one of the first cell is given, each next one follows from the
  // continuity of the first derivative at the breakpoint between.
  static void middle_values(const Task<Real>* task, const Values<Real, S>& y, Real* middle) {
    const Grid<Real, G> grid(task);
    middle[0] = task->bndConds[0];
    for (Index i = 0, n = task->size(); i + 2 < n; ++i) {
      if constexpr (G == kUniformGrid) {
        middle[i + 1] = Real(1.5) * y[i + 1] + Real(0.25) * (y[i] + y[i + 2]) - middle[i];
      } else {
        const Real h0 = grid.h(i), h1 = grid.h(i + 1), three = 3 * y[i + 1];
        middle[i + 1] =
            Real(0.25) * h1 * ((three + y[i]) / h0 + (three + y[i + 2]) / h1) - h1 / h0 * middle[i];
      }
    }
  }

  static void write_cells(const Task<Real>* task, const Values<Real, S>& y, const Real* middle, Real* c) {
    const Grid<Real, G> grid(task);
    for (Index i = 0, n = task->size(); i + 1 < n; ++i, c += 3) {
      const Real half = Real(0.5) * grid.h(i), square = half * half;
      c[0] = y[i];
      c[2] = Real(0.5) * (y[i] + y[i + 1] - 2 * middle[i]) / square;
      c[1] = (middle[i] - y[i] - square * c[2]) / half;
    }
  }

  static void all_functions(const Task<Real>* task, Real* middle) {
    for (Index f = 0; f < task->functions(); ++f) {
      const Values<Real, S> y(task, f);
      middle_values(task, y, middle);
      write_cells(task, y, middle, task->coeffs[f]);
    }
  }

  static int32_t build(const Task<Real>* task) {
    if (task->size() < kMaxStackSize) {
      Real middle[kMaxStackSize];
      all_functions(task, middle);
      return ORX_DF_OK;
    }
    const orx::Block<Real> middle(task->size() - 1);
    if (!middle) return ORX_DF_ERROR_MEMORY;
    all_functions(task, middle.get());
    return ORX_DF_OK;
  }
};

// Arrays of nx + 1 elements in one block. `lower[i]` and `upper[i]` stand in row i, left and right of its
// diagonal; `before` and `after` are the distances from breakpoint i to its knots.
struct SubbotinWork {
  Real *lower, *diagonal, *upper, *d, *dy, *before, *after, *knots;
};

// The first derivatives d at the breakpoints solve a tridiagonal system, which states that both neighbouring
// knots give a breakpoint the same second derivative. With A[i] = x[i] - t[i] and B[i] = t[i+1] - x[i], the
// distances from breakpoint i to its knots, and dy[i] = y[i+1] - y[i], row i reads
//   a B[i-1] d[i-1] + (2 + a B[i-1] + b A[i+1]) d[i] + b A[i+1] d[i+1] = 2 (a dy[i-1] + b dy[i]),
//   a = h[i] / D / A[i],  b = h[i-1] / D / B[i],  D = x[i+1] - x[i-1].
template <Storage S, Partition G>
[[gnu::noinline]] void fill_inner_rows(const Task<Real>* task, Index f, const SubbotinWork& w) {
  const Index n = task->size();
  const Grid<Real, G> grid(task);
  const Values<Real, S> y(task, f);
  for (Index i = 0; i < n; ++i) {
    w.before[i] = grid.x(i) - w.knots[i];
    w.after[i] = w.knots[i + 1] - grid.x(i);
  }
  for (Index i = 0; i + 1 < n; ++i) w.dy[i] = y[i + 1] - y[i];
  for (Index i = 1; i + 1 < n; ++i) {
    const Real width = grid.x(i + 1) - grid.x(i - 1);
    const Real a = grid.h(i) / width / w.before[i], b = grid.h(i - 1) / width / w.after[i];
    w.lower[i] = a * w.after[i - 1];
    w.upper[i] = b * w.before[i + 1];
    w.diagonal[i] = 2 + w.lower[i] + w.upper[i];
    w.d[i] = 2 * (a * w.dy[i - 1] + b * w.dy[i]);
  }
}

// The second coefficient is known from the knot to the right of a breakpoint; at the last two breakpoints it
// follows from the one before.
template <Storage S, Partition G>
[[gnu::noinline]] void write_subbotin_cells(const Task<Real>* task, Index f, const SubbotinWork& w) {
  const Index n = task->size(), general = std::max<Index>(n - 2, 1);
  const Grid<Real, G> grid(task);
  const Values<Real, S> y(task, f);
  Real* c = task->coeffs[f];
  for (Index i = 0; i < n; ++i, c += 3) {
    c[0] = y[i];
    c[1] = w.d[i];
    if (i < general) {
      const Real h = grid.h(i);
      c[2] =
          (w.d[i + 1] - w.d[i]) / (2 * h) + (2 * w.dy[i] - (w.d[i] + w.d[i + 1]) * h) / (2 * h * w.after[i]);
    } else {
      const Real h = grid.h(i - 1), p = w.before[i];
      c[2] = c[2 - 3] + (w.dy[i - 1] - Real(0.5) * h * (w.d[i - 1] + w.d[i])) / (p * (p - h));
    }
  }
}

template <SubgridForm K, Storage S, Partition G, BoundaryNumber N>
struct SubbotinSpline {
  static constexpr End kLeft = kBoundaries[N].left, kRight = kBoundaries[N].right;
  using Work = SubbotinWork;

  static void left_row(const Grid<Real, G>& grid, Index n, Real value, const Work& w) {
    if constexpr (kLeft == End::First) {
      w.d[0] = value;
      if (n > 2) w.d[1] -= w.lower[1] * value;
    } else {
      w.upper[0] = w.before[1] / grid.h(0);
      w.diagonal[0] = 2 - w.upper[0];
      w.d[0] = 2 * w.dy[0] / grid.h(0) - value * w.after[0];
    }
  }

  static void right_row(const Grid<Real, G>& grid, Index n, Real value, const Work& w) {
    if constexpr (kRight == End::First) {
      w.d[n - 1] = value;
      if (n > 2) w.d[n - 2] -= w.upper[n - 2] * value;
    } else {
      const Real h = grid.h(n - 2), share = w.before[n - 1] / h;
      w.lower[n - 1] = 1 - share;
      w.diagonal[n - 1] = 1 + share;
      w.d[n - 1] = 2 * w.dy[n - 2] / h + w.before[n - 1] * value;
    }
  }

  // Two breakpoints, one derivative given: the other end's row loses its product with the known one.
  static void close_short(const Work& w) {
    if constexpr (kLeft == End::First && kRight == End::Second) w.d[1] -= w.lower[1] * w.d[0];
    if constexpr (kLeft == End::Second && kRight == End::First) w.d[0] -= w.upper[0] * w.d[1];
  }

  static void solve(Index n, const Work& w) {
    const Index first = kLeft == End::First, last = n - 1 - (kRight == End::First);
    if (n == 2) close_short(w);
    if (first > last) return;
    solve_once(last - first + 1, w.lower + first + 1, w.diagonal + first, w.upper + first, w.d + first);
  }

  static void build_function(const Task<Real>* task, Index f, const Work& w) {
    const Index n = task->size();
    const Grid<Real, G> grid(task);
    fill_inner_rows<S, G>(task, f, w);
    left_row(grid, n, task->bndConds[0], w);
    right_row(grid, n, task->bndConds[1], w);
    solve(n, w);
    write_subbotin_cells<S, G>(task, f, w);
  }

  static int32_t build(const Task<Real>* task) {
    const Index length = task->size() + 1;
    const orx::Block<Real> block(int64_t(8) * length);
    if (!block) return ORX_DF_ERROR_MEMORY;
    Real* at[8];
    for (int k = 0; k < 8; ++k) at[k] = block.get() + k * length;
    const Work w{at[0], at[1], at[2], at[3], at[4], at[5], at[6], at[7]};
    if (!make_subgrid<K, Real, G>(task, w.knots)) return ORX_DF_ERROR_INT_CONDS;
    for (Index f = 0; f < task->functions(); ++f) build_function(task, f, w);
    return ORX_DF_OK;
  }
};

#define ORX_DF_STANDARD(S, G)                                                        \
  static int32_t _v1DQSStd##S##G(const Task<Real>* task, const ThreadingServices*) { \
    return StandardSpline<k##S, k##G>::build(task);                                  \
  }
#define ORX_DF_SUBBOTIN(K, S, G, B)                                                         \
  static int32_t _v1DQSSubb##K##S##G##B(const Task<Real>* task, const ThreadingServices*) { \
    return SubbotinSpline<k##K, k##S, k##G, kBoundary##B>::build(task);                     \
  }
// One row of the table: the kinds with values at both ends; the slots of the others are empty.
#define ORX_DF_TWO_SIDED(V, K, S, G) \
  V(K, S, G, 1st1st) V(K, S, G, 1st2nd) V(K, S, G, 2nd1st) V(K, S, G, 2nd2nd)
#define ORX_DF_SUBGRID_VARIANTS(DO, V, K) \
  DO(V, K, YCols, NoUniformGrid)          \
  DO(V, K, YCols, UniformGrid) DO(V, K, YRows, NoUniformGrid) DO(V, K, YRows, UniformGrid)
extern "C" {
ORX_DF_VARIANTS(ORX_DF_STANDARD)
ORX_DF_SUBGRID_VARIANTS(ORX_DF_TWO_SIDED, ORX_DF_SUBBOTIN, NoUniformSubgrid)
ORX_DF_SUBGRID_VARIANTS(ORX_DF_TWO_SIDED, ORX_DF_SUBBOTIN, UniformSubgrid)
}

#define ORX_DF_STANDARD_NAME(S, G) _v1DQSStd##S##G,
Builder<Real>* const _Dispatch_Std[] = {ORX_DF_VARIANTS(ORX_DF_STANDARD_NAME)};

#define ORX_DF_SUBBOTIN_NAME(K, S, G, B) _v1DQSSubb##K##S##G##B,
#define ORX_DF_SUBBOTIN_ROW(V, K, S, G) nullptr, nullptr, ORX_DF_TWO_SIDED(V, K, S, G) nullptr,
Builder<Real>* const _Dispatch_Subb[] = {
    ORX_DF_SUBGRID_VARIANTS(ORX_DF_SUBBOTIN_ROW, ORX_DF_SUBBOTIN_NAME, NoUniformSubgrid)
        ORX_DF_SUBGRID_VARIANTS(ORX_DF_SUBBOTIN_ROW, ORX_DF_SUBBOTIN_NAME, UniformSubgrid)};
static_assert(sizeof _Dispatch_Subb == 56 * sizeof _Dispatch_Subb[0]);

int32_t standard_spline(const Task<Real>* task, const ThreadingServices* threading) {
  if (task->bndCondKind != ORX_DF_QUADRATIC_VALUE) return ORX_DF_ERROR_BND_COND_KIND;
  if (!task->bndConds) return ORX_DF_ERROR_BND_CONDS;
  if (const int32_t bad = check_construction(task, ORX_DF_QUADRATIC)) return bad;
  return _Dispatch_Std[variant_number(task)](task, threading);
}

int32_t subbotin_spline(const Task<Real>* task, const ThreadingServices* threading) {
  if (!(task->intCondKind & ORX_DF_KNOTS)) return ORX_DF_ERROR_INT_COND_KIND;
  const int32_t boundary = boundary_number(task);
  if (boundary < 0) return boundary;
  const int uniform_subgrid = (task->intCondKind & ORX_DF_UNIFORM_KNOTS) != 0;
  const auto variant = _Dispatch_Subb[28 * uniform_subgrid + 7 * variant_number(task) + boundary];
  if (!variant) return ORX_DF_ERROR_BND_COND_KIND;
  if (const int32_t bad = check_construction(task, ORX_DF_QUADRATIC)) return bad;
  return variant(task, threading);
}

}  // namespace

ORX_API int32_t ORX_DF_NAME(DFQuadraticSpline1D)(DFTask* task, int64_t, int64_t, int64_t,
                                                 const ThreadingServices* threading) {
  const auto* t = Task<Real>::of(task);
  if (!t) return ORX_DF_ERROR_TASK;
  if (const int32_t bad = check_func_hint(t)) return bad;
  switch (t->splineKind) {
    case ORX_DF_DEFAULT:
      return standard_spline(t, threading);
    case ORX_DF_SUBBOTIN:
      return subbotin_spline(t, threading);
    default:
      return ORX_DF_ERROR_METHOD;
  }
}
