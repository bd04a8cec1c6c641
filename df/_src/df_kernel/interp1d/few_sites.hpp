// A few sites of one polynomial spline: found and evaluated in registers, without blocks.
// For the Real of the file that includes it.
#pragma once

#include <algorithm>
#include <cstdint>

#include "_service/evaluator_number.hpp"
#include "_service/polynomial.hpp"
#include "_service/search.hpp"
#include "interp1d/evaluators.hpp"
#include "simple_search1d/methods.hpp"

namespace {
using namespace orx::df;

// What is asked: results of a site `plane` apart, those of the next site `step` further.
struct FewSites {
  const Task<Real>* task;
  unsigned wanted;  // a mask of orders
  const Real* sites;
  Index count;
  Real* result;
  Index step, plane;
};

// How cells are found on the three sorts of partition, and where polynomials begin: of one site, and of the
// lanes of a vector, whose first n sites lie at `at`; rows of their coefficients are told with it.
struct UniformFinder {
  explicit UniformFinder(const Task<Real>* task)
      : cells(int32_t(task->gridSize), task->grid[0], task->grid[1], reciprocal_step(task)),
        last_polynomial(Real(int32_t(task->gridSize) - 2)) {}
  int32_t cell(const Real& site) const { return cells.of_one(site); }
  Real base(int32_t polynomial) const { return cells.breakpoint(Real(polynomial)); }
  template <int kOrder>
  Vec<Real> locate(Vec<Real> sites, const Real*, Index, Index* rows) const {
    const auto p = smaller(greater(cells.of<false>(sites) - 1, Vec<Real>{}), broadcast(last_polynomial));
    int32_t polynomials[kLanes<Real>];
    const auto integers = __builtin_convertvector(p, CellVec<Real>);
    __builtin_memcpy(polynomials, &integers, sizeof integers);
    for (int i = 0; i < kLanes<Real>; ++i) rows[i] = Index(polynomials[i]) * kOrder;
    return cells.breakpoint(p);
  }
  UniformCells<Real> cells;
  Real last_polynomial;
};

template <class Cells>
struct GridFinder {
  explicit GridFinder(const Task<Real>* task) : cells(task), grid(task->grid), nx(int32_t(task->gridSize)) {}
  int32_t cell(const Real& site) const { return cells.of(site); }
  Real base(int32_t polynomial) const { return grid[polynomial]; }
  template <int kOrder>
  Vec<Real> locate(Vec<Real>, const Real* at, Index n, Index* rows) const {
    int32_t polynomials[kLanes<Real>];
    find(at, n, polynomials);
    for (Index i = 0; i < kLanes<Real>; ++i) rows[i] = Index(polynomials[i]) * kOrder;
    return gather(grid, polynomials);
  }
  // A function of its own leaves the loop more registers.
  [[gnu::noinline]] void find(const Real* at, Index n, int32_t* polynomials) const {
    for (Index i = 0; i < n; ++i) polynomials[i] = polynomial_of_cell(cells.of(at[i]), nx);
    for (Index i = n; i < kLanes<Real>; ++i) polynomials[i] = polynomials[0];
  }
  Cells cells;
  const Real* grid;
  int32_t nx;
};
struct Hybrid : HybridCells<Real> {
  explicit Hybrid(const Task<Real>* task)
      : HybridCells(int32_t(task->gridSize), task->grid, task->cellTableScale, task->cellTable) {}
};
struct QuasiUniform {
  explicit QuasiUniform(const Task<Real>* t) : task(t), reciprocal(reciprocal_step(t)) {}
  int32_t of(const Real& site) const {
    int32_t found;
    quasi_uniform_cells(int32_t(task->gridSize), task->grid, 1, &site, reciprocal, &found);
    return found;
  }
  const Task<Real>* task;
  Real reciprocal;
};

// The wanted derivatives, one after the other, for a number or a vector of them.
template <int kOrder, class T, class Put>
[[gnu::always_inline]] inline void put_derivatives(const T* c, const T& t, unsigned wanted, Put put) {
  if (wanted & 1) put(derivative<kOrder, 0, Real>(c, t));
  if (wanted & 2) put(derivative<kOrder, 1, Real>(c, t));
  if (wanted & 4) put(derivative<kOrder, 2, Real>(c, t));
  if (wanted & 8) put(derivative<kOrder, 3, Real>(c, t));
}

// A vector of sites, or the first n of its lanes; the others repeat the first.
template <int kOrder, class Finder>
[[gnu::always_inline]] inline void evaluate_lanes(const FewSites& few, const Finder& find, Index first,
                                                  Index n) {
  const Real* const at = few.sites + first;
  const Vec<Real> sites =
      n == kLanes<Real> ? load(at) : orx::simd::native::load_few(at, int(n), broadcast(*at));
  Index rows[kLanes<Real>];
  const Vec<Real> t = sites - find.template locate<kOrder>(sites, at, n, rows);
  Vec<Real> c[kOrder];
  gather_rows<kOrder>(few.task->coeffs[0], rows, c);
  Real* out = few.result + first * few.step;
  put_derivatives<kOrder>(c, t, few.wanted, [&](Vec<Real> value) {
    if (few.step != 1)
      for (Index i = 0; i < n; ++i) out[i * few.step] = value[i];
    else if (n == kLanes<Real>)
      store(out, value);
    else
      orx::simd::native::store_few(out, int(n), value);
    out += few.plane;
  });
}

template <int kOrder, class Finder>
int32_t evaluate_one(const FewSites& few, const Finder& find) {
  const int32_t p = polynomial_of_cell(find.cell(*few.sites), int32_t(few.task->gridSize));
  Real* out = few.result;
  put_derivatives<kOrder>(few.task->coeffs[0] + Index(p) * kOrder, Real(*few.sites - find.base(p)),
                          few.wanted, [&](Real value) { *out = value, out += few.plane; });
  return ORX_DF_OK;
}

template <class Finder, int kOrder>
int32_t evaluate_few(const FewSites& few) {
  const Finder find(few.task);
  if (few.count == 1) return evaluate_one<kOrder>(few, find);
  for (Index i = 0; i < few.count; i += kLanes<Real>)
    evaluate_lanes<kOrder>(few, find, i, std::min<Index>(few.count - i, kLanes<Real>));
  return ORX_DF_OK;
}

// In the order of Task::few_sites_kernel.
using FewSitesKernel = int32_t(const FewSites&);
#define ORX_DF_FEW_SITES(Finder)                                               \
  evaluate_few<Finder, ORX_DF_LINEAR>, evaluate_few<Finder, ORX_DF_QUADRATIC>, \
      evaluate_few<Finder, ORX_DF_CUBIC>
FewSitesKernel* const kFewSites[3 * kFewSitesOrders] = {ORX_DF_FEW_SITES(UniformFinder),
                                                        ORX_DF_FEW_SITES(GridFinder<QuasiUniform>),
                                                        ORX_DF_FEW_SITES(GridFinder<Hybrid>)};

}  // namespace
