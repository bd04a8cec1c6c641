// A task with its data, in either precision, as the tests use it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "orx/df.h"
#include "support/allocations.hpp"
#include "support/threads.hpp"

template <class Real>
struct Api;
#define API(t, Real)                                                            \
  template <>                                                                   \
  struct Api<Real> {                                                            \
    static constexpr auto new_task = orx_df_kernel_##t##NewTask1D;              \
    static constexpr auto edit_spline = orx_df_kernel_##t##EditPPSpline1D;      \
    static constexpr auto edit_pointer = orx_df_kernel_##t##EditPtr;            \
    static constexpr auto edit_indexed = orx_df_kernel_##t##EditIdxPtr;         \
    static constexpr auto search = orx_df_kernel_##t##DFSearch1D;               \
    static constexpr auto linear = orx_df_kernel_##t##DFLinearSpline1D;         \
    static constexpr auto quadratic = orx_df_kernel_##t##DFQuadraticSpline1D;   \
    static constexpr auto natural = orx_df_kernel_##t##DFNaturalCubicSpline1D;  \
    static constexpr auto standard = orx_df_kernel_##t##DFDefaultCubicSpline1D; \
    static constexpr auto hermite = orx_df_kernel_##t##DFHermiteCubicSpline1D;  \
    static constexpr auto bessel = orx_df_kernel_##t##DFBesselCubicSpline1D;    \
    static constexpr auto akima = orx_df_kernel_##t##DFAkimaCubicSpline1D;      \
    static constexpr auto interpolate = orx_df_kernel_##t##DFInterpolate1D;     \
    static constexpr auto integrate = orx_df_kernel_##t##DFIntegrate1D;         \
    using SearchCb = orx_df_##t##search_cb;                                     \
    using InterpCb = orx_df_##t##interp_cb;                                     \
    using IntegrCb = orx_df_##t##integr_cb;                                     \
  };
API(d, double)
API(s, float)
#undef API

inline const ThreadingServices* serial() { return orx_serv_threading_serial(); }

// Data of a spline, and its task. Values are given function after function and stored as the hint says.
template <class Real>
struct Spline {
  // All breakpoints are given; with the hint of a uniform partition the task gets the ends alone.
  Spline(const std::vector<Real>& points, int64_t grid_hint, const std::vector<std::vector<Real>>& functions,
         int64_t func_hint = ORX_DF_ROWS, int32_t ilp64 = 0)
      : x(grid_hint == ORX_DF_UNIFORM_PARTITION ? std::vector<Real>{points.front(), points.back()} : points),
        nx(int64_t(points.size())),
        count(int64_t(functions.size())) {
    values.resize(size_t(nx * count));
    for (int64_t f = 0; f < count; ++f)
      for (int64_t k = 0; k < nx; ++k) values[at(func_hint, f, k)] = functions[size_t(f)][size_t(k)];
    EXPECT_EQ(Api<Real>::new_task(&task, nx, x.data(), grid_hint, count, values.data(), func_hint, ilp64), 0);
  }
  ~Spline() { EXPECT_EQ(orx_df_kernel_DeleteTask(&task), 0); }
  Spline(const Spline&) = delete;

  size_t at(int64_t hint, int64_t f, int64_t k) const {
    return size_t(hint == ORX_DF_COLUMNS ? k * count + f : f * nx + k);
  }
  void describe(int64_t spline_order, int64_t kind, int64_t bnd = 0, std::vector<Real> bnd_values = {},
                int64_t int_kind = 0, std::vector<Real> int_values = {}) {
    order = spline_order;
    bnds = std::move(bnd_values);
    ints = std::move(int_values);
    cells = nx - (kind == ORX_DF_SUBBOTIN ? 0 : 1);
    coeffs.assign(size_t(order * cells * count), Real(0));
    EXPECT_EQ(Api<Real>::edit_spline(task, order, kind, bnd, bnds.empty() ? nullptr : bnds.data(), int_kind,
                                     ints.empty() ? nullptr : ints.data(), coeffs.data(), 0),
              0);
  }
  const Real* cell(int64_t f, int64_t i) const { return &coeffs[size_t((f * cells + i) * order)]; }

  int32_t interpolate(const std::vector<Real>& sites, const std::vector<int32_t>& orders,
                      std::vector<Real>& result, int64_t hint = 0, int64_t site_hint = 0,
                      const ThreadingServices* threads = serial(), int64_t n = -1,
                      std::vector<int32_t>* found = nullptr) const {
    if (n < 0) n = int64_t(sites.size());
    const auto wanted = std::max<int64_t>(std::count(orders.begin(), orders.end(), 1), 1);
    result.assign(size_t(wanted * count * n), Real(-77));
    if (found) found->assign(size_t(n), -77);
    return Api<Real>::interpolate(task, found ? 3 : 1, 0, n, sites.data(), site_hint, int64_t(orders.size()),
                                  orders.data(), nullptr, result.data(), hint, nullptr, nullptr, nullptr,
                                  nullptr, nullptr, nullptr, nullptr, nullptr,
                                  found ? found->data() : nullptr, threads);
  }
  int32_t integrate(const std::vector<Real>& a, const std::vector<Real>& b, std::vector<Real>& result,
                    int64_t hint_a = 0, int64_t hint_b = 0,
                    const ThreadingServices* threads = serial()) const {
    result.assign(size_t(std::max<int64_t>(count, 1)) * a.size(), Real(-77));
    return Api<Real>::integrate(task, 0, int64_t(a.size()), a.data(), hint_a, b.data(), hint_b, nullptr,
                                nullptr, result.data(), 0, nullptr, nullptr, nullptr, nullptr, nullptr,
                                nullptr, nullptr, nullptr, threads);
  }

  std::vector<Real> x, values, coeffs, bnds, ints;
  int64_t nx, count, order = 0, cells = 0;
  DFTask* task = nullptr;
};

// The k-th derivative at t of n coefficients, lowest first.
template <class Real>
long double derivative(const Real* c, int64_t n, int64_t k, long double t) {
  long double sum = 0;
  for (int64_t power = n - 1; power >= k; --power) {
    long double factor = 1;
    for (int64_t j = 0; j < k; ++j) factor *= (long double)(power - j);
    sum = sum * t + factor * (long double)c[power];
  }
  return sum;
}

// Ascending points from 0 to n - 1, unevenly spaced, or evenly where `jitter` is 0.
template <class Real>
std::vector<Real> make_grid(int64_t n, double jitter, unsigned seed = 1) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> shift(-jitter, jitter);
  std::vector<Real> x(static_cast<size_t>(n));
  for (int64_t i = 0; i < n; ++i) x[size_t(i)] = Real(double(i) + (i == 0 || i == n - 1 ? 0 : shift(random)));
  return x;
}

template <class Real>
std::vector<Real> even_sites(Real first, Real last, int64_t n) {
  std::vector<Real> sites(static_cast<size_t>(n));
  for (int64_t i = 0; i < n; ++i)
    sites[size_t(i)] = n > 1 ? first + Real(i) * ((last - first) / Real(n - 1)) : first;
  return sites;
}

template <class Real>
std::vector<Real> random_values(int64_t n, double low, double high, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> value(low, high);
  std::vector<Real> v(static_cast<size_t>(n));
  for (Real& each : v) each = Real(value(random));
  return v;
}

template <class Real>
constexpr double kEps = sizeof(Real) == 8 ? 2.3e-16 : 1.2e-7;

using Precisions = ::testing::Types<double, float>;
