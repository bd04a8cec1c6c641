// Interpolation: search and evaluation, block by block.
#include <algorithm>

#include "_service/blocks.hpp"
#include "_service/search.hpp"
#include "interp1d/evaluators.hpp"
#include "interp1d/few_sites.hpp"

namespace {
using namespace orx::df;

constexpr Index kGroupBlocks = 5, kThreadedSites = 512;
constexpr uint64_t kMostFewSites = 8;
constexpr Index kScratchSites = 32, kScratchBytes = 18256, kScratchValues = 2048;

// The evaluators by name, and their tables.
#define ORX_DF_EVALUATOR(Kind, ...)                                                      \
  extern "C" __attribute__((visibility("hidden"))) int32_t ORX_DF_NAME(_##Kind##Eval)(   \
      const EvalBlock<Real>& b) {                                                        \
    return __VA_ARGS__(b);                                                               \
  }                                                                                      \
  extern "C" __attribute__((visibility("hidden"))) int32_t ORX_DF_NAME(_##Kind##EvalCB)( \
      const EvalBlock<Real>& b) {                                                        \
    return evaluate_or_call<Real, __VA_ARGS__>(b);                                       \
  }
}  // namespace
ORX_DF_EVALUATOR(LinearSpline, evaluate_polynomials<Real, 2>)
ORX_DF_EVALUATOR(QuadraticSpline, evaluate_polynomials<Real, 3>)
ORX_DF_EVALUATOR(CubicSpline, evaluate_polynomials<Real, 4>)
ORX_DF_EVALUATOR(QuadSubbSpline, evaluate_polynomials<Real, 3>)
ORX_DF_EVALUATOR(ArbitrSpline, evaluate_arbitrary<Real>)
ORX_DF_EVALUATOR(StepLeftSpline, evaluate_steps<Real, true>)
ORX_DF_EVALUATOR(StepRightSpline, evaluate_steps<Real, false>)
ORX_DF_EVALUATOR(LookUpSpline, evaluate_look_up<Real>)
namespace {

#define ORX_DF_EVALUATORS(CB)                                                     \
  {                                                                               \
    ORX_DF_NAME(_LinearSplineEval##CB), ORX_DF_NAME(_QuadraticSplineEval##CB),    \
        ORX_DF_NAME(_CubicSplineEval##CB), ORX_DF_NAME(_QuadSubbSplineEval##CB),  \
        ORX_DF_NAME(_ArbitrSplineEval##CB), ORX_DF_NAME(_StepLeftSplineEval##CB), \
        ORX_DF_NAME(_StepRightSplineEval##CB), ORX_DF_NAME(_LookUpSplineEval##CB) \
  }
Evaluator<Real>* const _Interpolate1DDispatch[kEvaluatorCount] = ORX_DF_EVALUATORS();
Evaluator<Real>* const _Interpolate1DDispatchCB[kEvaluatorCount] = ORX_DF_EVALUATORS(CB);

// The caller's functions for the parts of the line: left of the grid, inside, right of it.
enum Part { kLeft, kInside, kRight, kParts };
struct PartCallbacks {
  InterpCallback<Real> call[kParts];
  void* params[kParts];
  bool any() const { return call[kLeft] || call[kInside] || call[kRight]; }
  bool all() const { return call[kLeft] && call[kInside] && call[kRight]; }
};

Part part_of_cell(int32_t cell, Index nx) { return cell == 0 ? kLeft : cell >= nx ? kRight : kInside; }

// Whether what the evaluator reads is there.
int32_t check_data(const Task<Real>* task, EvaluatorNumber evaluator, const Orders& orders) {
  if (evaluator == kLookUp) {
    if (!task->funcs) return ORX_DF_ERROR_LOOKUP_VALUES;
    for (Index k = 1; k < orders.limit(); ++k)
      if (orders[k]) return ORX_DF_ERROR_LOOKUP_DERIVATIVE;
  }
  return check_spline_data(task, evaluator);
}

// All arguments of a call but the table of threads.
struct Request {
  const Task<Real>* task;
  int64_t type, count;
  const Real* sites;
  int64_t site_hint, order_count;
  const void* derivative_orders;
  const Real* data_hint;
  Real* result;
  int64_t result_hint;
  PartCallbacks callbacks;
  SearchCallback<Real> search;
  void* search_params;
  void* cells;
};

bool is_by_site(int64_t result_hint) {
  return result_hint == ORX_DF_ROWS || result_hint == ORX_DF_FIRST_ONLY;
}
bool is_by_order(int64_t result_hint) {
  return result_hint == ORX_DF_NO_HINT || result_hint == ORX_DF_COLUMNS;
}

// ---- Blocks ----

struct Interpolation : BlockWork {
  Interpolation(const Request& request, const Search& chosen, EvaluatorNumber number, const Orders& wanted)
      : r(request),
        task(request.task),
        search(chosen),
        evaluator(number),
        orders(wanted),
        want_values(request.type & ORX_DF_VALUES),
        want_cells(request.type & ORX_DF_CELLS),
        uniform_sites(request.site_hint == ORX_DF_UNIFORM_SITES),
        by_site(is_by_site(request.result_hint)) {
    count = Index(request.count);
    block = kSiteBlock;
    site_step = uniform_sites && count > 1 ? (r.sites[1] - r.sites[0]) / Real(count - 1) : 0;
  }

  const Request& r;
  const Task<Real>* task;
  const Search& search;
  EvaluatorNumber evaluator;
  const Orders& orders;
  bool want_values, want_cells, uniform_sites, by_site;
  Real site_step;
  Real* buffers;  // one for each worker, kSiteBlock sites of all wanted orders

  Index buffer_size() const { return kSiteBlock * orders.count(); }
  // Whether a block's values go to a buffer first: they are interleaved, or come list by list.
  bool buffered() const { return r.callbacks.any() || (by_site && orders.count() > 1); }
  Index function_count() const { return std::max<Index>(task->functions(), 1); }

  // The sites of a block; filled up to whole groups.
  const Real* block_sites(Index first, int32_t n, SiteList<Real>* list) const {
    list->count = n;
    if (uniform_sites) {
      for (int32_t i = 0; i < n; ++i) list->sites[i] = r.sites[0] + Real(first + i) * site_step;
    } else if (n == list->padded()) {
      return r.sites + first;
    } else {
      std::copy_n(r.sites + first, n, list->sites);
    }
    std::fill(list->sites + n, list->sites + list->padded(), list->sites[n - 1]);
    return list->sites;
  }

  void write_cells(Index first, const SiteList<Real>& list) const {
    if (task->ilp64Flag)
      std::copy_n(list.cells, list.count, static_cast<int64_t*>(r.cells) + first);
    else
      std::copy_n(list.cells, list.count, static_cast<int32_t*>(r.cells) + first);
  }

  void locate_sites(const Real* at, SiteList<Real>* list) const {
    if (evaluator > kArbitrary) return;
    if (task->uniform())
      locate<Real, kUniformGrid>(task, evaluator, at, list);
    else
      locate<Real, kNoUniformGrid>(task, evaluator, at, list);
  }

  // From a buffer to where the results of site `first` and those that follow it belong.
  void scatter(Index f, Index first, const int32_t* places, int32_t n, const Real* buffer) const {
    const Index wanted = orders.count();
    for (Index d = 0; d < wanted; ++d, buffer += kSiteBlock)
      for (int32_t i = 0; i < n; ++i) {
        const Index at = first + (places ? places[i] : i);
        r.result[by_site ? (f * count + at) * wanted + d : (f * wanted + d) * count + at] = buffer[i];
      }
  }

  EvalBlock<Real> eval_block(Index f, const SiteList<Real>& list, const Real* at, Real* out,
                             Index plane) const {
    return {task, &list, at, f, &orders, out, plane, nullptr, nullptr, by_site};
  }

  int32_t evaluate(Index first, const Real* at, SiteList<Real>* list, Real* buffer) const {
    const bool direct = !buffered() && list->count == list->padded();
    locate_sites(at, list);
    for (Index f = 0; f < function_count(); ++f) {
      Real* out = direct ? r.result + f * orders.count() * count + first : buffer;
      const auto b = eval_block(f, *list, at, out, direct ? count : Index(kSiteBlock));
      if (const int32_t bad = _Interpolate1DDispatch[evaluator](b)) return bad;
      if (!direct) scatter(f, first, nullptr, list->count, buffer);
    }
    return ORX_DF_OK;
  }

  // The parts of the block apart, each with its call-back.
  int32_t evaluate_parts(Index first, const Real* at, const SiteList<Real>& list, Real* buffer) const {
    SiteList<Real> parts[kParts];
    for (int32_t i = 0; i < list.count; ++i) {
      SiteList<Real>& part = parts[part_of_cell(list.cells[i], task->size())];
      part.cells[part.count] = list.cells[i];
      part.sites[part.count] = at[i];
      part.places[part.count++] = i;
    }
    for (int p = 0; p < kParts; ++p) {
      SiteList<Real>& part = parts[p];
      if (part.count == 0) continue;
      std::fill(part.sites + part.count, part.sites + part.padded(), part.sites[part.count - 1]);
      if (!r.callbacks.call[p]) locate_sites(part.sites, &part);
      for (Index f = 0; f < function_count(); ++f) {
        auto b = eval_block(f, part, part.sites, buffer, kSiteBlock);
        b.callback = r.callbacks.call[p];
        b.params = r.callbacks.params[p];
        const int32_t status = _Interpolate1DDispatchCB[evaluator](b);
        if (status < 0) return status;
        scatter(f, first, part.places, part.count, buffer);
      }
    }
    return ORX_DF_OK;
  }

  int32_t run_block(Index first, Index n, int32_t t, int32_t* start) const {
    SiteList<Real> list;
    const Real* at = block_sites(first, int32_t(n), &list);
    int32_t flags[kSiteBlock];
    const int32_t status = search.block(int32_t(n), at, start, list.cells, flags);
    if (status < 0) return status;
    if (want_cells) write_cells(first, list);
    if (!want_values) return ORX_DF_OK;
    Real* buffer = buffers + (buffered() ? t * buffer_size() : 0);
    return r.callbacks.any() ? evaluate_parts(first, at, list, buffer) : evaluate(first, at, &list, buffer);
  }
};

void interpolate_item(int i, int t, void* args) {
  const auto work = static_cast<Interpolation*>(static_cast<BlockWork*>(args));
  int32_t start = 0;
  run_item(work, i, [&](Index first, Index n) { return work->run_block(first, n, t, &start); });
}

extern "C" {
static void _v1DInterpThreader(int i, int t, int, void* work) { interpolate_item(i, t, work); }
static void _v1DInterpThreaderCB(int i, int t, int, void* work) { interpolate_item(i, t, work); }
}

int32_t run_interpolation(Interpolation* work, Real* values, const ThreadingServices* threading) {
  const int32_t threads = work->count > kThreadedSites ? threading->maxThreads() : 1;
  const Index needed = work->buffer_size() * (work->buffered() ? threads : 1);
  const orx::Block<Real> buffers(needed > kScratchValues ? needed : 0);
  if (needed > kScratchValues && !buffers) return ORX_DF_ERROR_MEMORY;
  work->buffers = buffers ? buffers.get() : values;
  return run_blocks(work, kGroupBlocks, threads, threading,
                    work->r.callbacks.any() ? _v1DInterpThreaderCB : _v1DInterpThreader);
}

// A short call needs no block of scratch.
__attribute__((noinline)) int32_t run_on_stack(Interpolation* work, const ThreadingServices* threading) {
  alignas(32) Real values[kScratchValues];
  return run_interpolation(work, values, threading);
}

int32_t run_with_scratch(Interpolation* work, const ThreadingServices* threading) {
  if (work->count < kScratchSites) return run_on_stack(work, threading);
  const orx::Block<char> scratch(kScratchBytes);
  if (!scratch) return ORX_DF_ERROR_MEMORY;
  return run_interpolation(work, reinterpret_cast<Real*>(scratch.get()), threading);
}

// A single site: left to the call-back of its part of the line or, where there is none, evaluated at once.
// `served` tells whether it could be.
int32_t _Interp1DKernel_scalar(const Request& r, const Search& search, unsigned wanted, bool* served) {
  int32_t start = 0, cell, flag;
  search.block(1, r.sites, &start, &cell, &flag);
  const Part part = part_of_cell(cell, r.task->size());
  const int64_t count = 1, wide_cell = cell;
  *served = true;
  if (r.callbacks.call[part])
    return r.callbacks.call[part](&count, &wide_cell, r.sites, r.result, r.callbacks.params[part]);
  *served = r.task->few_sites_kernel >= 0;
  return *served ? kFewSites[r.task->few_sites_kernel]({r.task, wanted, r.sites, 1, r.result, 0, 1})
                 : ORX_DF_OK;
}

__attribute__((noinline)) int32_t interpolate(const Request& r, const ThreadingServices* threading) {
  const Task<Real>* const t = r.task;
  const int32_t number = evaluator_number(t, r.callbacks.all());
  if (number < 0) return number;
  const auto evaluator = EvaluatorNumber(number);
  Search found;
  if (const int32_t bad = choose_search(t, r.site_hint, r.data_hint, r.search, r.search_params, &found))
    return bad;
  if (const int32_t bad = check_breakpoints(t)) return bad;
  const Orders orders(t, r.order_count, r.derivative_orders);
  const bool want_values = r.type & ORX_DF_VALUES, want_cells = r.type & ORX_DF_CELLS;
  if (want_values && !r.callbacks.all())
    if (const int32_t bad = check_data(t, evaluator, orders)) return bad;
  const bool alone = r.count == 1 && want_values && !want_cells && r.site_hint != ORX_DF_UNIFORM_SITES &&
                     evaluator <= kCubic && r.order_count <= 4 && t->funcCount <= 1 && !r.search;
  if (alone) {
    bool served;
    const int32_t status = _Interp1DKernel_scalar(r, found, orders.mask(), &served);
    if (served) return status;
  } else if (!is_by_site(r.result_hint) && !is_by_order(r.result_hint)) {
    return ORX_DF_ERROR_INTERPOLATION;
  }
  if (r.count <= 0) return ORX_DF_OK;
  if (r.count > PTRDIFF_MAX / int64_t(sizeof(Real))) return ORX_DF_ERROR_MEMORY;
  Interpolation work(r, found, evaluator, orders);
  return run_with_scratch(&work, orx::threading_or_serial(threading));
}

}  // namespace

// Calls for a few sites that ask for nothing unusual are sorted out first; whatever is wrong with a call is left
// to those that are not.
ORX_API int32_t ORX_DF_NAME(DFInterpolate1D)(
    DFTask* task, int64_t type, int64_t, int64_t site_count, const Real* sites, int64_t site_hint,
    int64_t order_count, const void* derivative_orders, const Real* data_hint, Real* result,
    int64_t result_hint, InterpCallback<Real> left, void* left_params, InterpCallback<Real> right,
    void* right_params, InterpCallback<Real> inside, void* inside_params, SearchCallback<Real> search,
    void* search_params, void* cells, const ThreadingServices* threading) {
  const auto* t = Task<Real>::of(task);
  if (!t) return ORX_DF_ERROR_TASK;
  const bool unusual = left || right || inside || search || data_hint || order_count > 4;
  const bool few = type == ORX_DF_VALUES && uint64_t(site_count) - 1 < kMostFewSites;
  if (few && !unusual && t->few_sites_kernel >= 0 && site_hint != ORX_DF_UNIFORM_SITES &&
      (is_by_order(result_hint) || is_by_site(result_hint))) {
    const Orders orders(t, order_count, derivative_orders);
    const auto count = Index(site_count);
    const bool rows = is_by_site(result_hint);
    return kFewSites[t->few_sites_kernel](
        {t, orders.mask(), sites, count, result, rows ? orders.count() : 1, rows ? 1 : count});
  }
  return interpolate({t,
                      type,
                      site_count,
                      sites,
                      site_hint,
                      order_count,
                      derivative_orders,
                      data_hint,
                      result,
                      result_hint,
                      {{left, inside, right}, {left_params, inside_params, right_params}},
                      search,
                      search_params,
                      cells},
                     threading);
}
