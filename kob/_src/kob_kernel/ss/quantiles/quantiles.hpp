// Exact quantiles, by selection, and order statistics, by sorting.
#pragma once

#include <limits>

#include "orx/base/memory.hpp"
#include "orx/base/threading.hpp"
#include "quantiles/select.hpp"
#include "radix.hpp"
#include "ss_task.hpp"

namespace orx::ss::quantiles {

// Where a quantile of order q lies among n ordered numbers: `part` of the way from number `below` to `above`,
// counted from 0.
struct Position {
  int below, above;
  double part;

  void set(double q, int n) {
    const double f = (n - 1) * q;
    below = int(f);
    above = below >= n - 1 ? n - 1 : below + 1;
    part = f - below;
  }
  // Between a and b >= a, both included, and not falling as `part` rises.
  template <class T>
  T between(T a, T b) const {
    if (part == 0 || a == b) return a;
    const double distance = double(b) - double(a), x = a + part * distance;
    if (!(distance <= std::numeric_limits<double>::max())) return T((1 - part) * a + part * b);
    return x < b ? T(x) : b;
  }
};

template <class T>
struct Computation {
  explicit Computation(const SSTask* task) : data(task) {}

  Observations<T> data;
  const T* orders = nullptr;  // null: no quantiles are wanted
  int order_count = 0;
  T* quantiles = nullptr;
  T* order_stats = nullptr;  // null: no order statistics are wanted
  bool order_stats_in_rows = false;
  const Position* positions = nullptr;  // of the quantiles
  const int* places = nullptr;          // the order statistics that they are made from
  int place_count = 0;
  T* areas = nullptr;       // for each worker, n elements, or twice as many where they are sorted apart
  int* selected = nullptr;  // the wanted variables

  // For many places a sort is faster than selection, and order statistics want one anyway. In columns those of a
  // variable are far apart: it is sorted elsewhere and copied there.
  static constexpr int kMostSelected = 64;
  bool sorts() const { return order_stats || place_count > kMostSelected; }
  bool sorts_in_place() const { return order_stats && order_stats_in_rows; }
  intptr_t area_size() const { return sorts() && !sorts_in_place() ? intptr_t(2) * data.n : data.n; }
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

// The places that the quantiles of a call lie between, in order and each once.
inline int list_places(const Position* positions, int count, int* places) {
  int listed = 0;
  for (int k = 0; k < count; ++k) {
    places[listed++] = positions[k].below;
    if (positions[k].part != 0) places[listed++] = positions[k].above;
  }
  sorting::sort(places, listed, sorting::Contiguous());
  int different = 0;
  for (int k = 0; k < listed; ++k)
    if (different == 0 || places[k] != places[different - 1]) places[different++] = places[k];
  return different;
}

template <class T>
void write_quantiles(const Computation<T>& c, const T* x, T* results) {
  for (int k = 0; k < c.order_count; ++k)
    results[k] = c.positions[k].between(x[c.positions[k].below], x[c.positions[k].above]);
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
  T* const x = c.sorts_in_place() ? c.order_stats + intptr_t(v) * n : c.sorts() ? area + n : area;
  copy(c.data.variable(v), c.data.stride(), x, 1, n);
  if (c.sorts()) {
    radix_sort(x, area, n);
  } else {
    Sample<T> sample;
    select_places(x, 0, n - 1, c.places, c.place_count, sample);
  }
  if (c.order_stats && !c.sorts_in_place()) copy(x, 1, c.order_stats + v, c.data.p, n);
  if (c.quantiles) write_quantiles(c, x, c.quantiles + intptr_t(i) * c.order_count);
}

template <class T>
int compute(SSTask* task, unsigned estimates, unsigned method, const ThreadingServices* services) {
  if (const int status = check_data<T>(task)) return status;
  if (low_word(task->observationCount) == 0) return KOB_SS_ERROR_OBSERVATION_COUNT;
  Computation<T> c(task);
  if (const int status = check(task, estimates, method, c)) return status;

  // Without work memory nothing is computed, which is no failure.
  const int p = c.data.p, n = c.data.n;
  const Block<Position> positions(int64_t(c.order_count) + 1);
  const Block<int> places(2 * int64_t(c.order_count) + 1), selected(p);
  if (!positions || !places || !selected) return KOB_SS_OK;
  for (int k = 0; k < c.order_count; ++k) positions[k].set(c.orders[k], n);
  c.positions = positions.get();
  c.place_count = list_places(c.positions, c.order_count, places.get());
  c.places = places.get();
  c.selected = selected.get();

  const ThreadingServices* threading = threading_or_serial(services);
  constexpr int64_t most_work = 0xA00000;
  const int64_t affordable = most_work / (int64_t(sizeof(T)) * c.area_size());
  int threads = threading->maxThreads();
  if (threads > p) threads = p;
  if (threads > affordable) threads = affordable ? int(affordable) : 1;
  const Block<T> areas(int64_t(threads) * c.area_size());
  if (!areas) return KOB_SS_OK;
  c.areas = areas.get();
  const Selection wanted(task);
  int count = 0;
  for (int j = 0; j < p; ++j)
    if (wanted[j]) c.selected[count++] = j;
  threading->parallelFor(count, threads, &c, _vSSQuantilesThreader<T>);
  return KOB_SS_OK;
}

}  // namespace orx::ss::quantiles
