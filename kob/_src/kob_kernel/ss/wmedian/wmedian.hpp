// Weighted quantiles: where the running sum of the weights, in the order of the values, reaches a part of their total.
#pragma once

#include "_math/sort.hpp"
#include "orx/base/memory.hpp"
#include "radix.hpp"
#include "ss_task.hpp"

namespace orx::ss::wmedian {

template <class T>
struct Weighted {
  T value, weight;
  bool operator<(const Weighted& other) const { return value < other.value; }
};

// By values, which carry their weights along.
template <class T>
void _vSSQuickMapSort(int n, Weighted<T>* x) {
  sorting::sort(x, n, sorting::Contiguous());
}

// Sums of weights in extended precision, where some thousand equal weights add up exactly: half of them is then half
// of the total.
using Sum = long double;

template <class T>
Sum total(int n, const T* weights) {
  if (!weights) return n;
  Sum sum = 0;
  for (int i = 0; i < n; ++i) sum += weights[i];
  return sum;
}

// Of sorted values the quantile of order q.
template <class T>
T quantile(int n, const Weighted<T>* x, Sum total_weight, T q) {
  const Sum wanted = total_weight * q;
  Sum sum = x[0].weight;
  int i = 0;
  while (!(sum >= wanted) && i < n - 1) sum += x[++i].weight;
  if (sum == wanted) {
    if (n % 2 == 1 || i == n - 1) return x[i].value;
    int next = i + 1;
    while (next < n - 1 && !(x[next].weight > 0)) ++next;
    return T((x[i].value + x[next].value) * T(0.5));
  }
  const Sum before = sum - x[i].weight;
  if (!(before > 0)) return x[i].value;
  if (n % 2 == 1 && before == (total_weight - x[i].weight) * q) return x[i].value;
  int previous = i - 1;
  while (previous > 0 && !(x[previous].weight > 0)) --previous;
  const T low = x[previous].value;
  return T(low + (wanted - before) / (sum - before) * (x[i].value - low));
}

template <class T>
int compute(SSTask* task) {
  if (const int status = check_data<T>(task)) return status;
  const Observations<T> data(task);
  if (data.n == 0) return KOB_SS_ERROR_OBSERVATION_COUNT;
  if (!task->quantOrders) return KOB_SS_ERROR_QUANTILE_ORDERS;
  const T q = *reals<T>(task->quantOrders);
  if (!orders_in_range(&q, 1)) return KOB_SS_ERROR_QUANTILE_ORDER_COUNT;
  if (!task->quantiles) return KOB_SS_ERROR_QUANTILES;
  const Block<Weighted<T>> x(data.n);
  if (!x) return KOB_SS_ERROR_MEMORY;
  const T* const weights = reals<T>(task->weights);
  const Sum total_weight = total(data.n, weights);
  for (int j = 0; j < data.p; ++j) {
    for (int i = 0; i < data.n; ++i) x[i] = {data(j, i), weights ? weights[i] : T(1)};
    _vSSQuickMapSort(data.n, x.get());
    reals<T>(task->quantiles)[j] = quantile(data.n, x.get(), total_weight, q);
  }
  return KOB_SS_OK;
}

}  // namespace orx::ss::wmedian
