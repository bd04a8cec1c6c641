// Weighted quantiles: where the running sum of the weights, in the order of the values, reaches a part of their total.
#pragma once

#include "orx/base/memory.hpp"
#include "quantiles/select.hpp"
#include "radix.hpp"
#include "ss_task.hpp"

namespace orx::ss::wmedian {

template <class T>
struct Weighted {
  T value, weight;
  bool operator<(const Weighted& other) const { return value < other.value; }
};

// Sums of weights in extended precision, where some thousand equal weights add up exactly: half of them is then half
// of the total.
using Sum = long double;

template <class T>
Sum sum_of_weights(const Weighted<T>* x, int first, int end) {
  Sum sum = 0;
  for (int i = first; i < end; ++i) sum += x[i].weight;
  return sum;
}

// Weighted values of which those from `first` to `last` are where a sort would put them, as is the border to what lies
// before and after them.
struct Part {
  int first, last;
  Sum before;  // weights of what lies before
};

// Sorts values, which carry their weights along, around the place where the sum of the weights reaches `wanted`.
template <class T>
Part _vSSQuickMapSort(int n, Weighted<T>* x, Sum total, Sum wanted) {
  constexpr int few = 100;
  const sorting::Range<Weighted<T>, sorting::Contiguous> range(x, {});
  quantiles::Sample<Weighted<T>> sample;
  Part part = {0, n - 1, 0};
  Sum inside = total;
  while (part.last - part.first >= few) {
    const Sum share = inside > 0 ? (wanted - part.before) / inside : 0;
    const int size = part.last - part.first + 1,
              guess = share > 0 ? share < 1 ? int(share * size) : size - 1 : 0;
    sample.draw(x, part.first, part.last, part.first + guess);
    const Weighted<T> pivot = sample.pivot();
    const int middle = int(range.gather(part.first, part.last + 1, [&](const auto& v) { return v < pivot; }));
    const Sum low = sum_of_weights(x, part.first, middle);
    if (part.before + low >= wanted && middle > part.first) {
      part.last = middle - 1;
      inside = low;
      continue;
    }
    // What lies from `middle` to `rest` is equal to the pivot.
    const int rest = int(range.gather(middle, part.last + 1, [&](const auto& v) { return !(pivot < v); }));
    const Sum equal = sum_of_weights(x, middle, rest);
    part.before += low;
    if (part.before + equal >= wanted || rest > part.last) return {middle, rest - 1, part.before};
    part.first = rest;
    part.before += equal;
    inside -= low + equal;
  }
  sorting::sort(x + part.first, part.last - part.first + 1, sorting::Contiguous());
  return part;
}

// The nearest value of positive weight before and after element i, where the part around it is sorted.
template <class T>
T value_before(const Weighted<T>* x, const Part& part, int i) {
  while (i > part.first)
    if (x[--i].weight > 0) return x[i].value;
  const Weighted<T>* nearest = nullptr;
  for (i = 0; i < part.first; ++i)
    if (x[i].weight > 0 && (!nearest || *nearest < x[i])) nearest = &x[i];
  return nearest ? nearest->value : x[part.first].value;
}
template <class T>
T value_after(int n, const Weighted<T>* x, const Part& part, int i) {
  while (i < part.last)
    if (x[++i].weight > 0) return x[i].value;
  const Weighted<T>*nearest = nullptr, *last = &x[part.last];
  for (i = part.last + 1; i < n; ++i) {
    if (x[i].weight > 0 && (!nearest || x[i] < *nearest)) nearest = &x[i];
    if (*last < x[i]) last = &x[i];
  }
  return nearest ? nearest->value : last->value;
}

// The quantile of order q; the values are put into another order.
template <class T>
T quantile(int n, Weighted<T>* x, Sum total, T q) {
  const Sum wanted = total * q;
  const Part part = _vSSQuickMapSort(n, x, total, wanted);
  int i = part.first;
  Sum before = part.before, sum = before + x[i].weight;
  for (; !(sum >= wanted) && i < part.last; sum += x[i].weight) {
    before = sum;
    ++i;
  }
  if (sum == wanted)
    return n % 2 == 1 || i == n - 1 ? x[i].value : T((x[i].value + value_after(n, x, part, i)) * T(0.5));
  if (!(before > 0)) return x[i].value;
  if (n % 2 == 1 && before == (total - x[i].weight) * q) return x[i].value;
  const T low = value_before(x, part, i);
  return T(low + (wanted - before) / (sum - before) * (x[i].value - low));
}

// Of variable j; `area` has room for all of its values.
template <class T>
T quantile_of(const Observations<T>& data, int j, const T* weights, T q, Weighted<T>* area) {
  for (int i = 0; i < data.n; ++i) area[i] = {data(j, i), weights ? weights[i] : T(1)};
  return quantile(data.n, area, sum_of_weights(area, 0, data.n), q);
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
  for (int j = 0; j < data.p; ++j) reals<T>(task->quantiles)[j] = quantile_of(data, j, weights, q, x.get());
  return KOB_SS_OK;
}

}  // namespace orx::ss::wmedian
