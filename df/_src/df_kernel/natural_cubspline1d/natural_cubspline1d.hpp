// The cubic spline with two continuous derivatives. Its first derivatives d at the breakpoints solve a
// tridiagonal system, which states that the second derivative is continuous (C. de Boor, A Practical Guide to
// Splines, ch. IV):
//   h[i] d[i-1] + 2 (h[i-1] + h[i]) d[i] + h[i-1] d[i+1] = 3 (h[i] m[i-1] + h[i-1] m[i]),
// m[i] being the slope of the broken line in cell i. The matrix belongs to grid and boundary alone: it is
// factored once for all functions.
#include <algorithm>

#include "_service/builder.hpp"
#include "_service/hermite_form.hpp"
#include "_service/solver.hpp"
#include "orx/base/memory.hpp"

namespace {
using namespace orx::df;

// What the functions share. Right sides lie `stride` apart, one per function or per worker.
struct NaturalWork {
  const Task<Real>* task;
  Index order, stride;  // of the system; a periodic one has no row for the last breakpoint
  Real *lower, *diagonal, *upper;
  Real *corner, corner_weight;  // see solve_corner
  Real* sides;
  int32_t* statuses;
};

// What does not depend on the boundary: the inner rows of the matrix and of a right side, and the cells.
template <Partition G>
[[gnu::noinline]] void inner_rows(const NaturalWork& w, const Grid<Real, G>& grid) {
  Real* __restrict lower = w.lower;
  Real* __restrict diagonal = w.diagonal;
  Real* __restrict upper = w.upper;
  for (Index i = 1, n = w.task->size(); i + 1 < n; ++i) {
    lower[i - 1] = G == kUniformGrid ? 1 : grid.h(i);
    diagonal[i] = G == kUniformGrid ? 4 : 2 * (grid.h(i - 1) + grid.h(i));
    upper[i] = G == kUniformGrid ? 1 : grid.h(i - 1);
  }
}

template <Storage S, Partition G>
[[gnu::noinline]] void inner_sides(const Grid<Real, G>& grid, const Values<Real, S>& y, Index n,
                                   Real* __restrict b) {
  for (Index i = 1; i + 1 < n; ++i)
    b[i] = G == kUniformGrid ? (y[i + 1] - y[i - 1]) * (3 * grid.inverse(i))
                             : 3 * (grid.h(i) * ((y[i] - y[i - 1]) / grid.h(i - 1)) +
                                    grid.h(i - 1) * ((y[i + 1] - y[i]) / grid.h(i)));
}

template <Storage S, Partition G>
[[gnu::noinline]] void write_cells(const Task<Real>* task, Index f, const Real* d) {
  write_hermite_cells(Values<Real, S>(task, f), Grid<Real, G>(task), d, 0, task->size() - 1, task->coeffs[f]);
}

// How far apart the coefficients of several functions lie, where that is the same for all of them and leaves
// each the room it needs; else 0.
Index coeff_spacing(const Task<Real>* task, Index room) {
  if (task->functions() < 2) return 0;
  const auto distance = [=](Index f) { return task->coeffs[f] - task->coeffs[f - 1]; };
  const Index spacing = distance(1);
  if (spacing < room || spacing > INT32_MAX) return 0;
  for (Index f = 2; f < task->functions(); ++f)
    if (distance(f) != spacing) return 0;
  return spacing;
}

template <Storage S, Partition G, BoundaryNumber N>
struct NaturalSpline {
  static constexpr End kLeft = kBoundaries[N].left, kRight = kBoundaries[N].right;
  static constexpr bool kPeriodic = kLeft == End::Periodic, kUniform = G == kUniformGrid;

  // ---- The matrix ----

  // The row of an end: `own` and `next` are the widths of its cell and of the one further in.
  static void end_row(End end, Real own, Real next, Real* diagonal, Real* off) {
    switch (end) {
      case End::NotAKnot:
        *diagonal = kUniform ? 2 : next;
        *off = kUniform ? 1 : own + next;
        break;
      case End::First:
        *diagonal = 1;
        *off = 0;
        break;
      default:
        *diagonal = kUniform ? 2 : 2 * own;
        *off = kUniform ? 1 : own;
    }
  }

  // The first and the last row of a periodic spline are divided by their element in the corner, which is 1
  // then, and lose it: what is solved is the matrix less e e', e being 1 at the first and the last place and
  // 0 elsewhere.
  static void periodic_rows(const NaturalWork& w, const Grid<Real, G>& grid) {
    const Index n = w.order;
    if constexpr (kUniform) {
      w.diagonal[0] = w.diagonal[n - 1] = 3;
      w.upper[0] = 1;
    } else {
      const Real around = grid.h(n - 1) / grid.h(0), back = grid.h(n - 1) / grid.h(n - 2);
      w.diagonal[0] = 2 * (around + 1) - 1;
      w.upper[0] = around;
      w.lower[n - 2] = back;
      w.diagonal[n - 1] = 2 * (1 + back) - 1;
    }
  }

  static void fill_matrix(const NaturalWork& w) {
    const Grid<Real, G> grid(w.task);
    const Index n = w.task->size();
    inner_rows(w, grid);
    if constexpr (kPeriodic) {
      periodic_rows(w, grid);
    } else {
      end_row(kLeft, grid.h(0), grid.h(1), w.diagonal, w.upper);
      end_row(kRight, grid.h(n - 2), grid.h(n - 3), w.diagonal + n - 1, w.lower + n - 2);
      if (is_parabola(n)) {
        w.lower[0] = w.upper[1] = 0;
        w.diagonal[1] = 1;
      }
    }
  }

  // Three breakpoints without a knot: one cubic, which nothing ties but three values. The parabola through them
  // is taken, by its derivative at the middle one.
  static bool is_parabola(Index n) { return kLeft == End::NotAKnot && !kUniform && n == 3; }

  // ---- The right side ----

  static Real slope(const Grid<Real, G>& grid, const Values<Real, S>& y, Index i) {
    return (y[i + 1] - y[i]) * grid.inverse(i);
  }

  // That of an end: widths as for the row, `m` and `m_next` the slopes; `sign` is 1 at the left, -1 at the
  // right.
  static Real end_side(End end, Real own, Real next, Real m, Real m_next, Real value, Real sign) {
    const Real both = own + next;
    switch (end) {
      case End::NotAKnot:
        return kUniform ? Real(0.5) * (m + m_next)
                        : ((own + 2 * both) * next * m + own * own * m_next) / both;
      case End::First:
        return value;
      case End::Second:
        return (3 * m - sign * Real(0.5) * own * value) * (kUniform ? 1 : own);
      default:
        return 3 * m * (kUniform ? 1 : own);
    }
  }

  static void fill_side(const NaturalWork& w, Index f, Real* b) {
    const Grid<Real, G> grid(w.task);
    const Values<Real, S> y(w.task, f);
    const Real* values = w.task->bndConds;
    const Index n = w.task->size();
    inner_sides(grid, y, n, b);
    const Real m0 = slope(grid, y, 0), m_last = slope(grid, y, n - 2);
    if constexpr (kPeriodic) {
      const Real around = kUniform ? 1 : grid.h(n - 2) / grid.h(0);
      b[0] = 3 * (m_last + around * m0);
      if (!kUniform) b[n - 2] /= grid.h(n - 3);
    } else {
      b[0] = end_side(kLeft, grid.h(0), grid.h(1), m0, slope(grid, y, 1), kLeft >= End::First ? values[0] : 0,
                      1);
      b[n - 1] = end_side(kRight, grid.h(n - 2), grid.h(n - 3), m_last, slope(grid, y, n - 3),
                          kRight >= End::First ? values[1] : 0, -1);
      if (is_parabola(n)) b[1] = (grid.h(1) * m0 + grid.h(0) * m_last) / (grid.h(0) + grid.h(1));
    }
  }

  // ---- The solution ----

  // By Sherman and Morrison: with z the solution for the right side e, the solution of the whole matrix is
  // b - (e'b / (1 + e'z)) z.
  static int32_t solve_corner(NaturalWork& w) {
    Real* z = w.corner;
    std::fill_n(z, w.order, Real(0));
    z[0] = z[w.order - 1] = 1;
    w.corner_weight = 0;
    const int32_t info = solve_factored(w.order, 1, w.lower, w.diagonal, w.upper, z, w.order);
    w.corner_weight = 1 / (1 + z[0] + z[w.order - 1]);
    return info;
  }

  static void finish_function(const NaturalWork& w, Index f, Real* d) {
    if constexpr (kPeriodic) {
      const Real share = w.corner_weight * (d[0] + d[w.order - 1]);
      for (Index i = 0; i < w.order; ++i) d[i] -= share * w.corner[i];
      d[w.order] = d[0];
    }
    write_cells<S, G>(w.task, f, d);
  }

  // One function with the factors at hand, as a worker does it.
  static int32_t build_function(const NaturalWork& w, Index f, Real* b) {
    fill_side(w, f, b);
    if (solve_factored(w.order, 1, w.lower, w.diagonal, w.upper, b, w.stride)) return ORX_DF_ERROR_SINGULAR;
    finish_function(w, f, b);
    return ORX_DF_OK;
  }

  static void worker(int f, int t, int, void* args) {
    const auto& w = *static_cast<NaturalWork*>(args);
    w.statuses[f] = build_function(w, f, w.sides + t * w.stride);
  }

  // All right sides at once; a single function is factored and solved in one pass.
  static int32_t build_serial(const NaturalWork& w) {
    const Index count = w.task->functions();
    for (Index f = 0; f < count; ++f) fill_side(w, f, w.sides + f * w.stride);
    const int32_t info = count == 1 && !kPeriodic ? solve_once(w.order, w.lower, w.diagonal, w.upper, w.sides)
                                                  : solve_factored(w.order, count, w.lower, w.diagonal,
                                                                   w.upper, w.sides, w.stride);
    if (info) return ORX_DF_ERROR_SINGULAR;
    for (Index f = 0; f < count; ++f) finish_function(w, f, w.sides + f * w.stride);
    return ORX_DF_OK;
  }

  static int32_t build_threaded(NaturalWork& w, const ThreadingServices* threading, int32_t threads,
                                orx_worker threader) {
    const auto count = int32_t(w.task->functions());
    const orx::Block<int32_t> statuses(count);
    if (!statuses) return ORX_DF_ERROR_MEMORY;
    w.statuses = statuses.get();
    std::fill_n(w.statuses, count, ORX_DF_OK);
    threading->parallelFor(count, threads, &w, threader);
    const int32_t* bad =
        std::find_if(w.statuses, w.statuses + count, [](int32_t status) { return status != 0; });
    return bad == w.statuses + count ? int32_t(ORX_DF_OK) : *bad;
  }

  // Where things stand: in the scratch each array takes a line, the matrix first. What is done with when the
  // cells are written can stand where these go: the matrix for a single function, and the right sides of
  // several, `spacing` apart, each at the end of its function's coefficients.
  struct Layout {
    // `workers` is 0 for a run without threads.
    Layout(const Task<Real>* task, Index workers)
        : n(task->size()),
          room(4 * (n - 1)),
          line(n + (-n & 15)),  // whole 128-byte lines
          spacing(workers ? 0 : coeff_spacing(task, room)),
          in_place(task->functions() == 1 && !kPeriodic && 3 * n <= room),
          matrix_size(in_place ? 0 : (3 + kPeriodic) * line),
          side_count(workers   ? workers
                     : spacing ? 0
                               : std::max<Index>(task->functions(), 1)) {}
    Index scratch_size() const { return matrix_size + side_count * line; }
    NaturalWork work(const Task<Real>* task, Real* scratch) const {
      Real* const matrix = in_place ? task->coeffs[0] : scratch;
      Real* const sides = spacing ? task->coeffs[0] + room - n : scratch + matrix_size;
      const Index apart = in_place ? n : line;
      return {task,
              n - kPeriodic,
              spacing ? spacing : line,
              matrix,
              matrix + apart,
              matrix + 2 * apart,
              matrix + 3 * apart,
              0,
              sides,
              nullptr};
    }
    Index n, room, line, spacing;
    bool in_place;
    Index matrix_size, side_count;
  };

  static int32_t build(const Task<Real>* task, const ThreadingServices* threading, orx_worker threader) {
    const Index n = task->size(), count = task->functions();
    const int32_t available = threading->maxThreads();
    const auto threads = int32_t(std::min<Index>(available, std::max<Index>(count, 1)));
    const bool threaded = count > 1 && threads > 1 && n >= 300 && (n >= 600 || available >= 8);
    const Layout layout(task, threaded ? threads : 0);
    const orx::Block<Real> block(layout.scratch_size());
    if (!block) return ORX_DF_ERROR_MEMORY;
    NaturalWork w = layout.work(task, block.get());
    fill_matrix(w);
    const bool factor_first = threaded || count > 1 || kPeriodic;
    if ((factor_first && factor(w.order, w.lower, w.diagonal, w.upper)) || (kPeriodic && solve_corner(w)))
      return ORX_DF_ERROR_SINGULAR;
    return threaded ? build_threaded(w, threading, threads, threader) : build_serial(w);
  }
};

#define ORX_DF_NATURAL(S, G, B)                                                                       \
  static void _v1DCSNatural##S##G##B##Threader(int i, int t, int T, void* work) {                     \
    NaturalSpline<k##S, k##G, kBoundary##B>::worker(i, t, T, work);                                   \
  }                                                                                                   \
  static int32_t _v1DCSNatural##S##G##B(const Task<Real>* task, const ThreadingServices* threading) { \
    return NaturalSpline<k##S, k##G, kBoundary##B>::build(task, threading,                            \
                                                          _v1DCSNatural##S##G##B##Threader);          \
  }
extern "C" {
ORX_DF_BOUNDARY_VARIANTS(ORX_DF_NATURAL)
}

#define ORX_DF_NATURAL_NAME(S, G, B) _v1DCSNatural##S##G##B,
Builder<Real>* const _DispatchNatural[] = {ORX_DF_BOUNDARY_VARIANTS(ORX_DF_NATURAL_NAME)};
static_assert(sizeof _DispatchNatural == 28 * sizeof _DispatchNatural[0]);

}  // namespace

ORX_API int32_t ORX_DF_NAME(DFNaturalCubicSpline1D)(DFTask* task, int64_t, int64_t method,
                                                    const ThreadingServices* threading) {
  const auto* t = Task<Real>::of(task);
  if (method != 0) return ORX_DF_ERROR_METHOD;
  const int32_t boundary = cubic_boundary_number(t, {3, false, false});
  if (boundary < 0) return boundary;
  return _DispatchNatural[7 * variant_number(t) + boundary](t, orx::threading_or_serial(threading));
}
