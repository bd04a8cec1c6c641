// Exact quantiles, by selection, and order statistics, by sorting.
#pragma once

#include "_math/sort.hpp"
#include "orx/base/memory.hpp"
#include "orx/base/threading.hpp"
#include "radix.hpp"
#include "ss_task.hpp"

namespace orx::ss::quantiles {

template <class T>
struct Computation {
  explicit Computation(const SSTask* task) : data(task) {}

  Observations<T> data;
  const T* orders = nullptr;  // null: no quantiles are wanted
  int order_count = 0;
  T* quantiles = nullptr;
  T* order_stats = nullptr;  // null: no order statistics are wanted
  bool order_stats_in_rows = false;
  T* areas = nullptr;       // for each worker, n elements, or twice as many where they are sorted apart
  int* selected = nullptr;  // the wanted variables

  // In columns the order statistics of a variable are far apart: it is sorted elsewhere and copied there.
  bool sorts_apart() const { return order_stats && !order_stats_in_rows; }
  intptr_t area_size() const { return sorts_apart() ? intptr_t(2) * data.n : data.n; }
};

template <class T>
int check(const SSTask* task, unsigned estimates, unsigned method, Computation<T>& c) {
  if (estimates & KOB_SS_QUANTILES) {
    if (!task->quantiles) return KOB_SS_ERROR_QUANTILES;
    if (!task->quantOrders) return KOB_SS_ERROR_QUANTILE_ORDERS;
    if (const int status = check_count(task, task->quantOrderCount, KOB_SS_ERROR_QUANTILE_ORDER_COUNT))
      return status;
    c.quantiles = reals<T>(task->quantiles);
    c.orders = reals<T>(task->quantOrders);
    c.order_count = low_word(task->quantOrderCount);
    if (!orders_in_range(c.orders, c.order_count)) return KOB_SS_ERROR_QUANTILE_ORDER_COUNT;
  }
  if (estimates & KOB_SS_ORDER_STATISTICS) {
    if (!task->orderStats) return KOB_SS_ERROR_ORDER_STATISTICS;
    const int storage = observation_storage(task->orderStatsStorage);
    if (storage < 0) return storage;
    c.order_stats = reals<T>(task->orderStats);
    c.order_stats_in_rows = storage == KOB_SS_ROWS;
  }
  return method & KOB_SS_FAST ? KOB_SS_OK : KOB_SS_ERROR_METHOD;
}

// Where a quantile of order q lies among n ordered numbers: `part` of the way from number `below` to `above`,
// counted from 0.
struct Position {
  int below, above;
  double part;

  Position(double q, int n) {
    const double f = (n - 1) * q;
    below = int(f);
    above = below >= n - 1 ? n - 1 : below + 1;
    part = f - below;
  }
  template <class T>
  T between(T a, T b) const {
    return part == 0 ? a : T((1 - part) * a + part * b);
  }
};

template <class T>
void select_quantiles(const Computation<T>& c, T* x, T* results) {
  const int n = c.data.n;
  int settled = 0;  // nothing before this place is larger than what stands there, nothing after it smaller
  for (int k = 0; k < c.order_count; ++k) {
    const Position position(c.orders[k], n);
    const T below = sorting::select(x, position.below >= settled ? settled : 0, n - 1, position.below);
    settled = position.below;
    T above = x[position.above];
    if (position.part != 0)
      for (int i = position.above; i < n; ++i) above = x[i] < above ? x[i] : above;
    results[k] = position.between(below, above);
  }
}

template <class T>
void copy(const T* from, intptr_t from_stride, T* to, intptr_t to_stride, int n) {
  for (int i = 0; i < n; ++i) to[i * to_stride] = from[i * from_stride];
}

template <class T>
void _vSSQuantilesThreader(int i, int t, int, void* arguments) {
  const Computation<T>& c = *static_cast<const Computation<T>*>(arguments);
  const int n = c.data.n, v = c.selected[i];
  T* const area = c.areas + t * c.area_size();
  T* const results = c.quantiles ? c.quantiles + intptr_t(i) * c.order_count : nullptr;
  if (!c.order_stats) {
    copy(c.data.variable(v), c.data.stride(), area, 1, n);
    if (results) select_quantiles(c, area, results);
    return;
  }
  T* const sorted = c.sorts_apart() ? area + n : c.order_stats + intptr_t(v) * n;
  copy(c.data.variable(v), c.data.stride(), sorted, 1, n);
  radix_sort(sorted, area, n);
  if (c.sorts_apart()) copy(sorted, 1, c.order_stats + v, c.data.p, n);
  if (!results) return;
  for (int k = 0; k < c.order_count; ++k) {
    const Position position(c.orders[k], n);
    results[k] = position.between(sorted[position.below], sorted[position.above]);
  }
}

template <class T>
int compute(SSTask* task, unsigned estimates, unsigned method, const ThreadingServices* services) {
  if (const int status = check_data<T>(task)) return status;
  if (low_word(task->observationCount) == 0) return KOB_SS_ERROR_OBSERVATION_COUNT;
  Computation<T> c(task);
  if (const int status = check(task, estimates, method, c)) return status;

  const ThreadingServices* threading = threading_or_serial(services);
  constexpr uint64_t most_work = 0xA00000;
  const uint64_t affordable = most_work / (sizeof(T) * uint64_t(c.area_size()));
  int threads = threading->maxThreads();
  if (threads > c.data.p) threads = c.data.p;
  if (uint64_t(threads) > affordable) threads = affordable ? int(affordable) : 1;

  // Without work memory nothing is computed, which is no failure.
  const Block<T> areas(int64_t(threads) * c.area_size());
  const Block<int> selected(c.data.p);
  if (!areas || !selected) return KOB_SS_OK;
  c.areas = areas.get();
  c.selected = selected.get();
  const Selection wanted(task);
  int count = 0;
  for (int j = 0; j < c.data.p; ++j)
    if (wanted[j]) c.selected[count++] = j;
  threading->parallelFor(count, threads, &c, _vSSQuantilesThreader<T>);
  return KOB_SS_OK;
}

}  // namespace orx::ss::quantiles
