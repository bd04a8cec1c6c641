// Medians, by selection.
#pragma once

#include "quantiles/quantiles.hpp"

namespace orx::ss {

// The k-th smallest of n numbers, counted from 0; they are put into another order.
template <class T>
T order_statistic(T* x, int n, int k) {
  quantiles::Sample<T> sample;
  quantiles::select_places(x, 0, n - 1, &k, 1, sample);
  return x[k];
}

// The median of n numbers, which are put into another order.
template <class T>
T median(T* x, int n) {
  quantiles::Position position;
  position.set(0.5, n);
  int places[2];
  const int count = quantiles::list_places(&position, 1, places);
  quantiles::Sample<T> sample;
  quantiles::select_places(x, 0, n - 1, places, count, sample);
  return position.between(x[position.below], x[position.above]);
}

}  // namespace orx::ss
