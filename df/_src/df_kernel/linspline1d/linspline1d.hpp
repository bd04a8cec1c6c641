// Linear splines: the broken line through the values.
#include <algorithm>

#include "_service/builder.hpp"

namespace {
using namespace orx::df;

constexpr Index kTileCells = 1024, kTileFunctions = 4, kLeastValues = 128;
constexpr Index kThreadedTiles = 5;

struct LinearTiles {
  const Task<Real>* task;
  Index across;  // tiles along the grid
};

template <Storage S, Partition G>
struct LinearSpline {
  // Quotients: this order of operations belongs to small tasks.
  static void plain(const Task<Real>* task) {
    const Index cells = task->size() - 1;
    const Real* ends = task->grid;
    for (Index f = 0; f < task->functions(); ++f) {
      const Values<Real, S> y(task, f);
      Real* c = task->coeffs[f];
      for (Index i = 0; i < cells; ++i) {
        const Real rise = y[i + 1] - y[i];
        c[2 * i] = y[i];
        c[2 * i + 1] = G == kUniformGrid ? rise * Real(cells) / (ends[1] - ends[0])
                                         : rise / (task->grid[i + 1] - task->grid[i]);
      }
    }
  }

  static void tile(const LinearTiles& tiles, Index number) {
    const Task<Real>* task = tiles.task;
    const Grid<Real, G> grid(task);
    const Index group = number / tiles.across * kTileFunctions, from = number % tiles.across * kTileCells;
    const Index to = std::min(from + kTileCells, task->size() - 1);
    for (Index f = group; f < std::min(group + kTileFunctions, task->functions()); ++f) {
      const Values<Real, S> y(task, f);
      Real* c = task->coeffs[f];
      Index i = from;
      for (; i + kLanes<Real> <= to; i += kLanes<Real>) {
        const Vec<Real> left = y.vector(i);
        store_pairs(c + 2 * i, left, (y.vector(i + 1) - left) * grid.inverses(i));
      }
      for (; i < to; ++i) {
        c[2 * i] = y[i];
        c[2 * i + 1] = (y[i + 1] - y[i]) * grid.inverse(i);
      }
    }
  }

  static int32_t build(const Task<Real>* task, const ThreadingServices* threading, orx_worker threader) {
    if (task->size() * std::max<Index>(task->functions(), 1) < kLeastValues) {
      plain(task);
      return ORX_DF_OK;
    }
    LinearTiles tiles{task, ceiling_quotient(task->size() - 1, kTileCells)};
    const auto count = int32_t(tiles.across * ceiling_quotient(task->functions(), kTileFunctions));
    if (count >= kThreadedTiles) {
      threading->parallelFor(count, std::min(count, threading->maxThreads()), &tiles, threader);
    } else {
      for (int32_t i = 0; i < count; ++i) tile(tiles, i);
    }
    return ORX_DF_OK;
  }
};

#define ORX_DF_LINEAR(S, G)                                                                       \
  static void _v1DLinearThreader##S##G(int i, int, int, void* tiles) {                            \
    LinearSpline<k##S, k##G>::tile(*static_cast<LinearTiles*>(tiles), i);                         \
  }                                                                                               \
  static int32_t _v1DLSLinear##S##G(const Task<Real>* task, const ThreadingServices* threading) { \
    return LinearSpline<k##S, k##G>::build(task, threading, _v1DLinearThreader##S##G);            \
  }
extern "C" {
ORX_DF_VARIANTS(ORX_DF_LINEAR)
}

#define ORX_DF_LINEAR_NAME(S, G) _v1DLSLinear##S##G,
Builder<Real>* const _Dispatch[] = {ORX_DF_VARIANTS(ORX_DF_LINEAR_NAME)};

}  // namespace

ORX_API int32_t ORX_DF_NAME(DFLinearSpline1D)(DFTask* task, int64_t, int64_t, int64_t method,
                                              const ThreadingServices* threading) {
  const auto* t = Task<Real>::of(task);
  if (!t) return ORX_DF_ERROR_TASK;
  if (method != 0) return ORX_DF_ERROR_METHOD;
  if (t->gridSize < 2) return ORX_DF_ERROR_GRID_SIZE;
  if (const int32_t bad = check_func_hint(t)) return bad;
  if (const int32_t bad = check_construction(t, ORX_DF_LINEAR)) return bad;
  return _Dispatch[variant_number(t)](t, orx::threading_or_serial(threading));
}
