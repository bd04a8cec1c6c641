// A robust location and scale of one variable: the two-step estimate of Maronna and Zamar (Technometrics 44, 2002). Around
// the median and in units of the median absolute deviation, a mean with weights that vanish far out, then a
// mean of truncated squares about it.
#pragma once

#include "_robust/median.hpp"
#include "orx/base/simd/lanes.hpp"

namespace orx::ss::rcov {

using namespace simd;

constexpr double kLocationBound = 4.5, kScaleBound = 3.0;

struct TwoStep {
  double location, variance;
};

// Calls add(x, mask) for four elements at a time, `mask` being set where there is one.
template <class T, class Add>
[[gnu::always_inline]] inline void by_fours(const T* x, int n, Add add) {
  const Doubles all = first_four(4);
  int i = 0;
  for (; n - i >= 4; i += 4) add(load4(x + i), all);
  if (i == n) return;
  const Doubles rest = first_four(n - i);
  add(load4(x + i, rest), rest);
}

template <class T>
double weighted_location(const T* x, int n, double centre, double reciprocal) {
  const Doubles m = spread(centre), unit = spread(reciprocal / kLocationBound), one = spread(1);
  Doubles sum = {}, weights = {};
  by_fours(x, n, [&](Doubles v, Doubles mask) {
    const Doubles z = (v - m) * unit, u = greater(one - z * z, Doubles{}), w = keep(u * u, mask);
    weights += w;
    sum += w * v;
  });
  return sum4(sum) / sum4(weights);
}

// Of squares in the given unit, of which none counts for more than the bound.
template <class T>
double sum_of_truncated_squares(const T* x, int n, double centre, double reciprocal) {
  const Doubles m = spread(centre), unit = spread(reciprocal), most = spread(kScaleBound * kScaleBound);
  Doubles sum = {};
  by_fours(x, n, [&](Doubles v, Doubles mask) {
    const Doubles y = (v - m) * unit;
    sum += keep(lesser(y * y, most), mask);
  });
  return sum4(sum);
}

// `area` has room for n numbers. Where half of the data are equal the scale is 0 and the location the mean.
template <class T>
TwoStep two_step(const T* x, int n, T* area) {
  for (int i = 0; i < n; ++i) area[i] = x[i];
  const T centre = median(area, n);
  for (int i = 0; i < n; ++i) area[i] = x[i] > centre ? x[i] - centre : centre - x[i];
  const double deviation = double(median(area, n)), reciprocal = deviation > 0 ? 1 / deviation : 0;
  const double location = weighted_location(x, n, double(centre), reciprocal);
  const double squares = sum_of_truncated_squares(x, n, location, reciprocal);
  return {location, squares / n * (deviation * deviation)};
}

}  // namespace orx::ss::rcov
