// The cubic spline with given second derivatives M at the inner breakpoints. No system is solved: each cell
// follows from its values and its two second derivatives, an end cell from what is known of its end.
#include <algorithm>

#include "_service/builder.hpp"
#include "orx/base/memory.hpp"

namespace {
using namespace orx::df;

// The cell of width h with slope m between second derivatives `left` and `right`.
void write_cell(Real y, Real m, Real h, Real left, Real right, Real* c) {
  c[0] = y;
  c[1] = m - h * (left / 3 + right / 6);
  c[2] = Real(0.5) * left;
  c[3] = (right - left) / (6 * h);
}

// The second derivative at inner breakpoint i.
Real second(const Task<Real>* task, Index i) { return task->intConds[i - 1]; }

// What does not depend on the boundary: the slopes, and the cells between the outer two.
template <Storage S, Partition G>
[[gnu::noinline]] void write_inner_cells(const Task<Real>* task, Index f, Real* slopes) {
  const Index cells = task->size() - 1;
  const Grid<Real, G> grid(task);
  const Values<Real, S> y(task, f);
  Real* c = task->coeffs[f];
  for (Index i = 0; i < cells; ++i) slopes[i] = (y[i + 1] - y[i]) / grid.h(i);
  for (Index i = 1; i + 1 < cells; ++i)
    write_cell(y[i], slopes[i], grid.h(i), second(task, i), second(task, i + 1), c + 4 * i);
}

template <Storage S, Partition G, BoundaryNumber N>
struct DefaultSpline {
  static constexpr End kLeft = kBoundaries[N].left, kRight = kBoundaries[N].right;

  static void first_cell(const Task<Real>* task, Real y, Real m, Real h, Real* c) {
    const Real* values = task->bndConds;
    const Real inner = second(task, 1);
    switch (kLeft) {
      case End::Second:
      case End::Periodic:
        return write_cell(y, m, h, values[0], inner, c);
      case End::First:
        c[1] = values[0];
        c[3] = inner / (4 * h) + (values[0] - m) / (2 * h * h);
        c[2] = Real(0.5) * inner - 3 * h * c[3];
        break;
      case End::FreeEnd:
        c[2] = 0;
        c[3] = inner / (6 * h);
        c[1] = m - h * h * c[3];
        break;
      default:  // not a knot: the cubic of the next cell goes on; of the three breakpoints' two cells nothing
                // tells it
        c[3] = task->size() > 3 ? c[4 + 3] : 0;
        c[2] = Real(0.5) * inner - 3 * h * c[3];
        c[1] = m - h * (c[2] + h * c[3]);
    }
    c[0] = y;
  }

  static void last_cell(const Task<Real>* task, Real y, Real m, Real h, Real* c) {
    const Real* values = task->bndConds;
    const Real inner = second(task, task->size() - 2);
    if (kRight == End::Second) return write_cell(y, m, h, inner, values[1], c);
    if (kRight == End::Periodic) return write_cell(y, m, h, inner, values[0], c);
    c[2] = Real(0.5) * inner;
    switch (kRight) {
      case End::First:
        c[3] = ((values[1] - m) / h - c[2]) / (2 * h);
        break;
      case End::FreeEnd:
        c[3] = -c[2] / (3 * h);
        break;
      default:
        c[3] = c[-4 + 3];
    }
    c[1] = m - h * (c[2] + h * c[3]);
    c[0] = y;
  }

  static void build_function(const Task<Real>* task, Index f, Real* slopes) {
    const Index cells = task->size() - 1;
    const Grid<Real, G> grid(task);
    const Values<Real, S> y(task, f);
    Real* c = task->coeffs[f];
    write_inner_cells<S, G>(task, f, slopes);
    first_cell(task, y[0], slopes[0], grid.h(0), c);
    last_cell(task, y[cells - 1], slopes[cells - 1], grid.h(cells - 1), c + 4 * (cells - 1));
  }

  static int32_t build(const Task<Real>* task) {
    const orx::Block<Real> slopes(task->size() - 1);
    if (!slopes) return ORX_DF_ERROR_MEMORY;
    for (Index f = 0; f < task->functions(); ++f) build_function(task, f, slopes.get());
    return ORX_DF_OK;
  }
};

#define ORX_DF_DEFAULT_CUBIC(S, G, B)                                                       \
  static int32_t _v1DCSDefault##S##G##B(const Task<Real>* task, const ThreadingServices*) { \
    return DefaultSpline<k##S, k##G, kBoundary##B>::build(task);                            \
  }
extern "C" {
ORX_DF_BOUNDARY_VARIANTS(ORX_DF_DEFAULT_CUBIC)
}

#define ORX_DF_DEFAULT_NAME(S, G, B) _v1DCSDefault##S##G##B,
Builder<Real>* const _DispatchDefault[] = {ORX_DF_BOUNDARY_VARIANTS(ORX_DF_DEFAULT_NAME)};
static_assert(sizeof _DispatchDefault == 28 * sizeof _DispatchDefault[0]);

}  // namespace

ORX_API int32_t ORX_DF_NAME(DFDefaultCubicSpline1D)(DFTask* task, int64_t, int64_t,
                                                    const ThreadingServices* threading) {
  const auto* t = Task<Real>::of(task);
  const int32_t boundary = cubic_boundary_number(t, {3, true, false});
  if (boundary < 0) return boundary;
  return _DispatchDefault[7 * variant_number(t) + boundary](t, threading);
}
