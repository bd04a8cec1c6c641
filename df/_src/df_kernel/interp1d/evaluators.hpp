// The evaluators: one function's values and derivatives at one list of sites.
#pragma once

#include <cstdint>

#include "_service/builder.hpp"
#include "_service/evaluator_number.hpp"
#include "_service/polynomial.hpp"
#include "_service/samples.hpp"
#include "_service/subgrid.hpp"
#include "_service/vectors.hpp"
#include "orx/base/memory.hpp"

namespace orx::df {

constexpr int kSiteBlock = 64, kSiteGroup = 8;

// Which derivatives are wanted: the caller's array, of 32-bit or 64-bit integers.
class Orders {
 public:
  template <class Real>
  Orders(const Task<Real>* task, int64_t count, const void* array)
      : words_(static_cast<const int32_t*>(array)),
        step_(task->ilp64Flag ? 2 : 1),
        size_(array ? Index(count) : 0) {
    for (Index k = 0; k < size_; ++k) count_ += words_[k * step_] == 1;
    if (count_ == 0) size_ = 0, count_ = 1;  // nothing wanted means the function
    for (Index k = 0; k < 4; ++k) mask_ |= unsigned((*this)[k]) << k;
  }
  bool operator[](Index k) const { return size_ == 0 ? k == 0 : k < size_ && words_[k * step_] == 1; }
  Index limit() const { return size_ == 0 ? 1 : size_; }  // one more than the highest that may be wanted
  Index count() const { return count_; }
  unsigned mask() const { return mask_; }  // bit k: order k, up to 3

 private:
  const int32_t* words_;
  Index step_, size_, count_ = 0;
  unsigned mask_ = 0;
};

// Up to 64 sites with their cells, and what the polynomials need of them. All arrays are filled up to whole
// groups.
template <class Real>
struct SiteList {
  int32_t count = 0;
  bool one_row;  // all sites have the same polynomial
  alignas(32) int32_t cells[kSiteBlock];
  alignas(32) int32_t polynomials[kSiteBlock];
  alignas(32) Index rows[kSiteBlock];  // where their coefficients begin
  alignas(32) Real t[kSiteBlock];      // the distance from the polynomial's base
  alignas(32) Real sites[kSiteBlock];
  int32_t places[kSiteBlock];  // in the block, for a list that is a part of it

  int32_t padded() const { return (count + kSiteGroup - 1) & -kSiteGroup; }
};

template <class Real>
struct EvalBlock {
  const Task<Real>* task;
  const SiteList<Real>* list;
  const Real* sites;
  Index function;
  const Orders* orders;
  Real* result;  // order number d of site i goes to result[d * plane + i]; whole groups are written
  Index plane;
  InterpCallback<Real> callback;
  void* params;
  bool by_site;  // the layout of a call-back's result
};

template <class Real>
using Evaluator = int32_t(const EvalBlock<Real>& b);

// ---- Polynomials ----

// The knot of a Subbotin spline between breakpoints decides which of two polynomials a site takes.
template <class Real, Partition G>
void settle_by_knots(const Task<Real>* task, const Real* sites, int32_t n, int32_t* polynomials) {
  const Grid<Real, G> grid(task);
  const InnerKnots<Real> knots(task);
  for (int32_t i = 0; i < n; ++i) {
    const int32_t p = polynomials[i];
    polynomials[i] += sites[i] >= knots.between(p, grid.x(p), grid.x(p + 1));
  }
}

// Fills rows, t and one_row from the cells. `sites` are the list's, as many as padded() says.
template <class Real, Partition G>
void locate(const Task<Real>* task, EvaluatorNumber evaluator, const Real* sites, SiteList<Real>* list) {
  const Grid<Real, G> grid(task);
  const auto nx = int32_t(task->gridSize), n = list->padded();
  const auto order = Index(task->splineOrder);
  int32_t* const polynomials = list->polynomials;
  for (int32_t i = list->count; i < n; ++i) list->cells[i] = list->cells[i - 1];
  for (int32_t i = 0; i < n; ++i) polynomials[i] = polynomial_of_cell(list->cells[i], nx);
  if (evaluator == kSubbotin) settle_by_knots<Real, G>(task, sites, n, polynomials);
  const auto cells_of = [=](int32_t i) {
    CellVec<Real> at;
    __builtin_memcpy(&at, polynomials + i, sizeof at);
    return at;
  };
  const int32_t one = polynomials[0];
  CellVec<Real> differ{};
  for (int32_t i = 0; i < n; i += kLanes<Real>) {
    const CellVec<Real> at = cells_of(i);
    differ |= at ^ one;
    const auto rows = __builtin_convertvector(at, IndexVec<Real>) * order;
    __builtin_memcpy(list->rows + i, &rows, sizeof rows);
  }
  const Real* const breakpoints = task->grid;
  for (int32_t i = 0; i < n; i += kLanes<Real>) {
    Vec<Real> base;
    if constexpr (G == kUniformGrid)
      base = grid.x(0) + __builtin_convertvector(cells_of(i), Vec<Real>) * grid.h();
    else
      base = gather(breakpoints, polynomials + i);
    store(list->t + i, load(sites + i) - base);
  }
  list->one_row = true;
  for (int k = 0; k < kLanes<Real>; ++k) list->one_row &= differ[k] == 0;
}

// Coefficients in the lanes: of each site's own cell, or of the one cell of all.
template <class Real, int kOrder>
struct GatheredRows {
  const Real* coeffs;
  const Index* rows;
  void load(int32_t i, Vec<Real> (&c)[kOrder]) const { gather_rows<kOrder>(coeffs, rows + i, c); }
};
template <class Real, int kOrder>
struct OneRow {
  OneRow(const Real* coeffs, const Index* rows) {
    for (int k = 0; k < kOrder; ++k) row[k] = broadcast(coeffs[rows[0] + k]);
  }
  void load(int32_t, Vec<Real> (&c)[kOrder]) const {
    for (int k = 0; k < kOrder; ++k) c[k] = row[k];
  }
  Vec<Real> row[kOrder];
};

// kWanted: the mask of wanted orders; 0: what the block says.
template <class Real, int kOrder, unsigned kWanted, class Rows>
void evaluate_groups(const EvalBlock<Real>& b, const Rows& rows) {
  const unsigned wanted = kWanted ? kWanted : b.orders->mask();
  const int32_t n = b.list->padded();
  Real* const result = b.result;
  const Index plane = b.plane;
  for (int32_t group = 0; group < n; group += kSiteGroup) {
    for (int32_t i = group; i < group + kSiteGroup; i += kLanes<Real>) {
      Vec<Real> c[kOrder];
      const Vec<Real> t = load(b.list->t + i);
      rows.load(i, c);
      Real* out = result + i;
      const auto put = [&](Vec<Real> value) {
        store(out, value);
        out += plane;
      };
      if (wanted & 1) put(derivative<kOrder, 0, Real>(c, t));
      if (wanted & 2) put(derivative<kOrder, 1, Real>(c, t));
      if (wanted & 4) put(derivative<kOrder, 2, Real>(c, t));
      if (wanted & 8) put(derivative<kOrder, 3, Real>(c, t));
    }
  }
}

template <class Real, int kOrder, class Rows>
void evaluate_rows(const EvalBlock<Real>& b, const Rows& rows) {
  switch (b.orders->mask()) {
    case 1:
      return evaluate_groups<Real, kOrder, 1>(b, rows);
    case 2:
      return evaluate_groups<Real, kOrder, 2>(b, rows);
    case 3:
      return evaluate_groups<Real, kOrder, 3>(b, rows);
    default:
      return evaluate_groups<Real, kOrder, 0>(b, rows);
  }
}

// Zeros for the order numbers from `first` on.
template <class Real>
void fill_zero(const EvalBlock<Real>& b, Index first) {
  for (Index d = first; d < b.orders->count(); ++d)
    std::fill_n(b.result + d * b.plane, b.list->padded(), Real(0));
}

template <class Real, int kOrder>
int32_t evaluate_polynomials(const EvalBlock<Real>& b) {
  const Real* coeffs = b.task->coeffs[b.function];
  if (b.list->one_row)
    evaluate_rows<Real, kOrder>(b, OneRow<Real, kOrder>(coeffs, b.list->rows));
  else
    evaluate_rows<Real, kOrder>(b, GatheredRows<Real, kOrder>{coeffs, b.list->rows});
  fill_zero(b, __builtin_popcount(b.orders->mask()));
  return ORX_DF_OK;
}

template <class Real>
int32_t evaluate_arbitrary(const EvalBlock<Real>& b) {
  const auto order = Index(b.task->splineOrder);
  const Real* coeffs = b.task->coeffs[b.function];
  Real* out = b.result;
  for (Index k = 0; k < b.orders->limit(); ++k) {
    if (!(*b.orders)[k]) continue;
    for (int32_t i = 0; i < b.list->count; ++i)
      out[i] = derivative(coeffs + b.list->rows[i], order, k, b.list->t[i]);
    out += b.plane;
  }
  return ORX_DF_OK;
}

// ---- Steps and look-up: the function's values themselves ----

template <class Real, bool kLeft>
int32_t evaluate_steps(const EvalBlock<Real>& b) {
  const Samples<Real> samples(b.task, b.function);
  const bool values = (*b.orders)[0];
  for (int32_t i = 0; values && i < b.list->count; ++i)
    b.result[i] = kLeft ? samples.left_continuous(b.list->cells[i], b.sites[i])
                        : samples.right_continuous(b.list->cells[i]);
  fill_zero(b, values);
  return ORX_DF_OK;
}

template <class Real>
int32_t evaluate_look_up(const EvalBlock<Real>& b) {
  const Samples<Real> samples(b.task, b.function);
  for (int32_t i = 0; i < b.list->count; ++i) {
    const int32_t cell = b.list->cells[i];
    const Real site = b.sites[i];
    if (cell == 0) return ORX_DF_ERROR_LOOKUP_SITE;
    if (samples.at(cell - 1, site))
      b.result[i] = samples.y(cell - 1);
    else if (samples.at(cell, site))
      b.result[i] = samples.y(cell);
    else
      return ORX_DF_ERROR_LOOKUP_SITE;
  }
  return ORX_DF_OK;
}

// ---- Call-backs ----

// Runs the call-back, and brings its result from the layout of the call to planes.
template <class Real>
int32_t evaluate_by_callback(const EvalBlock<Real>& b) {
  constexpr Index stack_values = 1024;
  const Index n = b.list->count, wanted = b.orders->count();
  Real on_stack[stack_values];
  const bool fits = n * wanted <= stack_values;
  const Block<Real> heap(fits ? 0 : n * wanted);
  if (!fits && !heap) return ORX_DF_ERROR_MEMORY;
  Real* values = fits ? on_stack : heap.get();
  int64_t cells[kSiteBlock];
  std::copy_n(b.list->cells, n, cells);
  const int64_t count = n;
  const int32_t status = b.callback(&count, cells, b.sites, values, b.params);
  for (Index d = 0; d < wanted; ++d)
    for (Index i = 0; i < n; ++i) b.result[d * b.plane + i] = values[b.by_site ? i * wanted + d : d * n + i];
  return status;
}

template <class Real, Evaluator<Real>* plain>
int32_t evaluate_or_call(const EvalBlock<Real>& b) {
  return b.callback ? evaluate_by_callback(b) : plain(b);
}

}  // namespace orx::df
