// Integration between pairs of limits: search of both, then sums over the pieces between them.
#include <algorithm>

#include "_service/blocks.hpp"
#include "_service/evaluator_number.hpp"
#include "_service/search.hpp"
#include "integr1d/pieces.hpp"
#include "orx/base/memory.hpp"
#include "simple_search1d/methods.hpp"

namespace {
using namespace orx::df;

constexpr Index kPairBlock = 128, kGroupBlocks = 4, kThreadedPairs = 256;

struct IntegrCallbacks {
  IntegrCallback<Real> left, right, inside;
  void *left_params, *right_params, *inside_params;
  bool any() const { return left || right || inside; }
  bool all() const { return left && right && inside; }
};

// A block of pairs and one function.
struct IntegrBlock {
  const Task<Real>* task;
  Index function;
  int32_t count;
  const Real *lower, *upper;
  const int32_t *lower_cells, *upper_cells;
  Real* result;
  const IntegrCallbacks* callbacks;
  const PieceSums* sums;  // null where pieces are to be added one by one
};

using Integrator = int32_t(const IntegrBlock& b);

// A limit with its cell.
struct Limit {
  Real at;
  int32_t cell;
};

template <class Pieces>
int32_t integrate_plain(const IntegrBlock& b) {
  const Pieces pieces(b.task, b.function);
  for (int32_t i = 0; i < b.count; ++i) {
    const Limit lower{b.lower[i], b.lower_cells[i]}, upper{b.upper[i], b.upper_cells[i]};
    const bool swapped = upper.at < lower.at;
    const Limit &from = swapped ? upper : lower, &to = swapped ? lower : upper;
    const Real sum = integrate_pieces(pieces, b.sums, from.at, from.cell, to.at, to.cell);
    b.result[i] = swapped ? -sum : sum;
  }
  return ORX_DF_OK;
}

// Adds the integral from a to b, by the call-back where there is one.
template <class Pieces>
int32_t add_part(const Pieces& pieces, const PieceSums* sums, Limit a, Limit b, IntegrCallback<Real> callback,
                 void* params, Real* sum) {
  if (!callback) {
    *sum += integrate_pieces(pieces, sums, a.at, a.cell, b.at, b.cell);
    return ORX_DF_OK;
  }
  const int64_t count = 1, cell_a = a.cell, cell_b = b.cell;
  Real value = 0;
  const int32_t status = callback(&count, &cell_a, &a.at, &cell_b, &b.at, &value, params);
  *sum += value;
  return status;
}

// The parts of one interval left of the grid, right of it and inside.
template <class Pieces>
int32_t add_parts(const IntegrBlock& b, const Pieces& pieces, Limit from, Limit to, Real* sum) {
  const IntegrCallbacks& calls = *b.callbacks;
  const auto nx = int32_t(b.task->gridSize);
  const Limit first{b.task->grid[0], 1}, last{b.task->last(), nx};
  int32_t status = ORX_DF_OK;
  if (from.at < first.at) {
    const Limit end = to.at < first.at ? to : first;
    status = add_part(pieces, b.sums, from, end, calls.left, calls.left_params, sum);
    from = first;
  }
  if (status >= 0 && to.at > last.at) {
    const Limit begin = from.at > last.at ? from : last;
    status = add_part(pieces, b.sums, begin, to, calls.right, calls.right_params, sum);
    to = last;
  }
  if (status >= 0 && from.at < to.at)
    status = add_part(pieces, b.sums, from, to, calls.inside, calls.inside_params, sum);
  return status;
}

template <class Pieces>
int32_t integrate_with_callbacks(const IntegrBlock& b) {
  const Pieces pieces(b.task, b.function);
  for (int32_t i = 0; i < b.count; ++i) {
    Limit from{b.lower[i], b.lower_cells[i]}, to{b.upper[i], b.upper_cells[i]};
    const bool swapped = to.at < from.at;
    if (swapped) std::swap(from, to);
    Real sum = 0;
    if (from.at != to.at) {
      const int32_t status = add_parts(b, pieces, from, to, &sum);
      if (status < 0) return status;
    }
    b.result[i] = swapped ? -sum : sum;
  }
  return ORX_DF_OK;
}

// The pieces by kind, on either partition.
template <Partition G>
using LinearPieces = PolynomialPieces<Real, G, ORX_DF_LINEAR>;
template <Partition G>
using QuadPieces = PolynomialPieces<Real, G, ORX_DF_QUADRATIC>;
template <Partition G>
using CubPieces = PolynomialPieces<Real, G, ORX_DF_CUBIC>;
template <Partition G>
using SubbPieces = SubbotinPieces<Real, G>;
template <Partition G>
using ArbPieces = ArbitraryPieces<Real, G>;
template <Partition>
using PwLPieces = StepPieces<Real, true>;
template <Partition>
using PwRPieces = StepPieces<Real, false>;

using SumPieces = void(const Task<Real>* task, Index function, PieceSums sums);
template <template <Partition> class Pieces>
void sum_pieces(const Task<Real>* task, Index function, PieceSums sums) {
  if (task->uniform())
    sums.add_up(Pieces<kUniformGrid>(task, function));
  else
    sums.add_up(Pieces<kNoUniformGrid>(task, function));
}
SumPieces* const kSumPieces[kLookUp] = {
    sum_pieces<LinearPieces>, sum_pieces<QuadPieces>, sum_pieces<CubPieces>, sum_pieces<SubbPieces>,
    sum_pieces<ArbPieces>,    sum_pieces<PwLPieces>,  sum_pieces<PwRPieces>};

#define ORX_DF_INTEGRATOR_NAME(Kind, CB) ORX_DF_NAME(_Integrate##Kind##Spline##CB)
#define ORX_DF_INTEGRATOR(Kind, CB, integrate)                                     \
  extern "C" __attribute__((visibility("hidden"))) int32_t ORX_DF_INTEGRATOR_NAME( \
      Kind, CB)(const IntegrBlock& b) {                                            \
    return b.task->uniform() ? integrate<Kind##Pieces<kUniformGrid>>(b)            \
                             : integrate<Kind##Pieces<kNoUniformGrid>>(b);         \
  }
#define ORX_DF_INTEGRATORS(Kind)             \
  ORX_DF_INTEGRATOR(Kind, , integrate_plain) \
  ORX_DF_INTEGRATOR(Kind, CB, integrate_with_callbacks)

}  // namespace
ORX_DF_INTEGRATORS(Linear)
ORX_DF_INTEGRATORS(Quad)
ORX_DF_INTEGRATORS(Cub)
ORX_DF_INTEGRATORS(Subb)
ORX_DF_INTEGRATORS(Arb)
ORX_DF_INTEGRATORS(PwL)
ORX_DF_INTEGRATORS(PwR)
namespace {

#define ORX_DF_INTEGRATOR_TABLE(CB)                                                                         \
  {                                                                                                         \
    ORX_DF_INTEGRATOR_NAME(Linear, CB), ORX_DF_INTEGRATOR_NAME(Quad, CB), ORX_DF_INTEGRATOR_NAME(Cub, CB),  \
        ORX_DF_INTEGRATOR_NAME(Subb, CB), ORX_DF_INTEGRATOR_NAME(Arb, CB), ORX_DF_INTEGRATOR_NAME(PwL, CB), \
        ORX_DF_INTEGRATOR_NAME(PwR, CB)                                                                     \
  }
Integrator* const _Integrate1DDispatch[kLookUp] = ORX_DF_INTEGRATOR_TABLE();
Integrator* const _Integrate1DDispatchCB[kLookUp] = ORX_DF_INTEGRATOR_TABLE(CB);

// The values of all functions, if there are any, and what the integrator reads.
int32_t check_data(const Task<Real>* task, EvaluatorNumber integrator, bool all_callbacks) {
  if (task->functions() > 0)
    if (const int32_t bad = check_values(task)) return bad;
  if (const int32_t bad = check_breakpoints(task)) return bad;
  return all_callbacks ? int32_t(ORX_DF_OK) : check_spline_data(task, integrator);
}

struct Integration : BlockWork {
  const Task<Real>* task;
  Search lower_search, upper_search;
  bool sorted;  // some of the limits are said to ascend
  EvaluatorNumber integrator;
  const Real *lower, *upper;
  Real* result;
  IntegrCallbacks callbacks;
  double* sums;  // of all functions, one after the other; null where pieces are to be added one by one

  Index function_count() const { return std::max<Index>(task->functions(), 1); }
  Index last_piece() const {
    const bool polynomials = integrator <= kCubic || integrator == kArbitrary;
    return task->size() - (polynomials ? 2 : 1);
  }
  PieceSums sums_of(Index f) const { return {sums + f * PieceSums::room(last_piece()), last_piece()}; }

  // The cells where the sorted searches go on.
  struct Starts {
    int32_t lower = 0, upper = 0;
  };

  int32_t run_block(Index first, Index n, Starts* starts) const {
    int32_t lower_cells[kPairBlock], upper_cells[kPairBlock], flags[kPairBlock];
    int32_t status = lower_search.block(int32_t(n), lower + first, &starts->lower, lower_cells, flags);
    if (status >= 0)
      status = upper_search.block(int32_t(n), upper + first, &starts->upper, upper_cells, flags);
    Integrator* const integrate =
        (callbacks.any() ? _Integrate1DDispatchCB : _Integrate1DDispatch)[integrator];
    for (Index f = 0; f < function_count() && status >= 0; ++f) {
      PieceSums own;
      if (sums) own = sums_of(f);
      status = integrate({task, f, int32_t(n), lower + first, upper + first, lower_cells, upper_cells,
                          result + f * count + first, &callbacks, sums ? &own : nullptr});
    }
    return status;
  }
};

void integrate_item(int i, void* args) {
  const auto work = static_cast<Integration*>(static_cast<BlockWork*>(args));
  Integration::Starts starts;
  run_item(work, i, [&](Index first, Index n) { return work->run_block(first, n, &starts); });
}

extern "C" {
static void _v1DIntegrThreader(int i, int, int, void* work) { integrate_item(i, work); }
static void _v1DIntegrThreaderCB(int i, int, int, void* work) { integrate_item(i, work); }
}

// About how many breakpoints lie within the intervals: some of these are looked up in the table of bins, or
// divided.
double breakpoints_within(const Integration& work) {
  const Task<Real>* task = work.task;
  const Index looked_at = std::clamp<Index>(work.count / 8, 4, 64),
              step = std::max<Index>(work.count / looked_at, 1);
  const auto nx = int32_t(task->gridSize);
  const bool uniform = task->uniform();
  const Bins<Real> bins(nx, task->grid[0], task->cellTableScale);
  const UniformCells<Real> cells(nx, task->grid[0], task->last(), reciprocal_step(task));
  const auto place = [&](Real site) {
    return uniform ? double(cells.of_one(site)) : double(task->cellTable[2 * bins.of(site)]);
  };
  double sum = 0;
  Index n = 0;
  for (Index i = 0; i < work.count; i += step, ++n)
    sum += __builtin_fabs(place(work.upper[i]) - place(work.lower[i]));
  return sum / double(n) * double(work.count);
}

// Adds up whole pieces beforehand where the intervals reach over several times as many as there are. Without
// memory for that they are added interval by interval.
void prepare_sums(Integration* work, orx::Block<double>* memory) {
  constexpr Index least_count = 5;
  constexpr double several = 3;
  const bool stale_table = work->task->table_size != work->task->gridSize;
  if (work->count < least_count || work->callbacks.inside || stale_table) return;
  if (breakpoints_within(*work) < several * double(work->task->gridSize)) return;
  if (!memory->allocate(int64_t(work->function_count()) * PieceSums::room(work->last_piece()))) return;
  work->sums = memory->get();
  for (Index f = 0; f < work->function_count(); ++f)
    kSumPieces[work->integrator](work->task, f, work->sums_of(f));
}

int32_t _Integr1DKernel(Integration* work, const ThreadingServices* threading) {
  orx::Block<double> sums;
  prepare_sums(work, &sums);
  work->block = kPairBlock;
  if (work->sorted) {  // one run, so that the starts go through
    work->origin = 0;
    work->per_item = ceiling_quotient(work->count, kPairBlock);
    integrate_item(0, work);
    return work->failure.status();
  }
  const int32_t threads = work->count >= kThreadedPairs ? threading->maxThreads() : 1;
  return run_blocks(work, kGroupBlocks, threads, threading,
                    work->callbacks.any() ? _v1DIntegrThreaderCB : _v1DIntegrThreader);
}

}  // namespace

ORX_API int32_t ORX_DF_NAME(DFIntegrate1D)(DFTask* task, int64_t, int64_t limit_count, const Real* lower,
                                           int64_t lower_hint, const Real* upper, int64_t upper_hint,
                                           const Real* lower_data_hint, const Real* upper_data_hint,
                                           Real* result, int64_t result_hint, IntegrCallback<Real> left,
                                           void* left_params, IntegrCallback<Real> right, void* right_params,
                                           IntegrCallback<Real> inside, void* inside_params,
                                           SearchCallback<Real> search, void* search_params,
                                           const ThreadingServices* threading) {
  const auto* t = Task<Real>::of(task);
  if (!t) return ORX_DF_ERROR_TASK;
  Integration work{};
  work.task = t;
  work.callbacks = {left, right, inside, left_params, right_params, inside_params};
  const int32_t integrator = evaluator_number(t, work.callbacks.all());
  if (integrator < 0) return integrator;
  if (integrator == kLookUp) return ORX_DF_ERROR_SPLINE_KIND;
  work.integrator = EvaluatorNumber(integrator);
  if (const int32_t bad =
          choose_search(t, lower_hint, lower_data_hint, search, search_params, &work.lower_search))
    return bad;
  if (const int32_t bad =
          choose_search(t, upper_hint, upper_data_hint, search, search_params, &work.upper_search))
    return bad;
  if (result_hint != ORX_DF_NO_HINT && result_hint != ORX_DF_ROWS && result_hint != ORX_DF_COLUMNS &&
      result_hint != ORX_DF_FIRST_ONLY)
    return ORX_DF_ERROR_RESULT_HINT;
  if (const int32_t bad = check_data(t, work.integrator, work.callbacks.all())) return bad;
  if (limit_count <= 0) return ORX_DF_OK;
  if (limit_count > PTRDIFF_MAX / int64_t(sizeof(Real))) return ORX_DF_ERROR_MEMORY;
  work.count = Index(limit_count);
  work.sorted = lower_hint == ORX_DF_SORTED_SITES || upper_hint == ORX_DF_SORTED_SITES;
  work.lower = lower;
  work.upper = upper;
  work.result = result;
  return _Integr1DKernel(&work, orx::threading_or_serial(threading));
}
