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

// Which polynomials serve sites on the three sorts of partition, and where these begin: of one site, and of the
// lanes of a vector, whose first n sites lie at `at`; rows of their coefficients are told with it.
inline void whole_numbers(Vec<Real> v, int32_t* out) {
  const auto integers = __builtin_convertvector(v, CellVec<Real>);
  __builtin_memcpy(out, &integers, sizeof integers);
}

struct UniformFinder {
  explicit UniformFinder(const Task<Real>* task) : cells(&task->uniform_cells), nx(int32_t(task->gridSize)) {
    if (cells->made_of(task->gridSize, task->grid)) return;
    remade = {nx, task->grid[0], task->grid[1]};
    cells = &remade;
  }
  int32_t polynomial(const Real& site) const { return polynomial_of_cell(cells->of_one(site), nx); }
  Real base(int32_t polynomial) const { return cells->breakpoint(Real(polynomial)); }
  template <int kOrder>
  Vec<Real> locate(Vec<Real> sites, const Real*, Index, Index* rows) const {
    const auto found = cells->polynomial(sites);
    int32_t p[kLanes<Real>];
    whole_numbers(found, p);
    for (int i = 0; i < kLanes<Real>; ++i) rows[i] = Index(p[i]) * kOrder;
    return cells->breakpoint(found);
  }
  const UniformCells<Real>* cells;
  int32_t nx;
  UniformCells<Real> remade;  // where the caller has put other ends into the array since the last edit
};

template <class Polynomials>
struct GridFinder {
  explicit GridFinder(const Task<Real>* task) : polynomials(task), grid(task->grid) {}
  int32_t polynomial(const Real& site) const { return polynomials.of_one(site); }
  Real base(int32_t polynomial) const { return grid[polynomial]; }
  template <int kOrder>
  Vec<Real> locate(Vec<Real> sites, const Real* at, Index n, Index* rows) const {
    int32_t p[kLanes<Real>];
    polynomials.of(sites, at, n, [&](Index i, int32_t one) { p[i] = one, rows[i] = Index(one) * kOrder; });
    for (Index i = n; i < kLanes<Real>; ++i) p[i] = p[0], rows[i] = rows[0];
    return gather(grid, p);
  }
  Polynomials polynomials;
  const Real* grid;
};

// The polynomial of a site is how many breakpoints are at or below it, but for the first and the last.
//
// Halving waits for each load, and where the number of steps varies they cannot be foretold. The bins of most
// tables hold 16 breakpoints, which are counted at once.
struct Hybrid {
  explicit Hybrid(const Task<Real>* task)
      : nx_(int32_t(task->gridSize)),
        grid_(task->grid),
        bins_(nx_, grid_[0], task->cellTableScale),
        table_(task->cellTable) {}
  int32_t of_one(const Real& site) const {
    return nx_ < kCountedOfOne + 2 ? of_short_grid(site) : in_bin(bins_.of(site), site);
  }
  template <class Put>
  [[gnu::always_inline]] inline void of(Vec<Real> sites, const Real* at, Index n, Put put) const {
    if (nx_ < kCountedOfOne + 2) {
      for (Index i = 0; i < n; ++i) put(i, of_short_grid(at[i]));
      return;
    }
    int32_t in[kLanes<Real>];
    whole_numbers(bins_.whole(sites), in);
    for (Index i = 0; i < n; ++i) put(i, in_bin(in[i], at[i]));
  }

 private:
  static constexpr int32_t kCountedOfOne = sizeof(Real) == sizeof(double) ? 16 : 24;

  int32_t of_short_grid(const Real& site) const { return bisect(grid_ + 1, 0, nx_ - 2, site); }
  [[gnu::always_inline]] inline int32_t in_bin(int32_t bin, const Real& site) const {
    const int32_t* pair = table_ + 2 * bin;
    int32_t at = pair[0];
    for (int32_t width = pair[1] - at; width > kCountedOfOne + 1; width -= width / 2)
      at = halved(grid_, at, width / 2, site);
    return count_from<kCountedOfOne>(grid_ + 1, std::min(at, nx_ - 2 - kCountedOfOne), site);
  }

  int32_t nx_;
  const Real* grid_;
  Bins<Real> bins_;
  const int32_t* table_;
};

struct QuasiUniform {
  explicit QuasiUniform(const Task<Real>* t) : task(t), reciprocal(reciprocal_step(t)) {}
  int32_t of_one(const Real& site) const {
    const auto nx = int32_t(task->gridSize);
    int32_t found;
    quasi_uniform_cells(nx, task->grid, 1, &site, reciprocal, &found);
    return polynomial_of_cell(found, nx);
  }
  template <class Put>
  void of(Vec<Real>, const Real* at, Index n, Put put) const {
    for (Index i = 0; i < n; ++i) put(i, of_one(at[i]));
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

// A vector of sites, or the first n of its lanes; the others repeat the first. A function of its own: inlined
// into a loop, all constants would be spread out on the stack before it.
template <int kOrder, class Finder>
[[gnu::noinline]] void evaluate_lanes(const FewSites& few, const Finder& find, Index first, Index n) {
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
  const int32_t p = find.polynomial(*few.sites);
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
