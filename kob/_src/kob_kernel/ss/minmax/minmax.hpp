// Running minima and maxima.
#pragma once

#include "orx/base/memory.hpp"
#include "orx/base/simd/lanes.hpp"
#include "ss_task.hpp"

namespace orx::ss::minmax {

using namespace simd;

// Running extremes of four lanes. A NaN in x leaves them as they are.
struct Extremes {
  Doubles least, greatest;

  void take(Doubles x) {
    least = lesser(x, least);
    greatest = greater(x, greatest);
  }
};

// One variable whose observations lie side by side.
template <class T>
void sweep_row(const T* x, int n, double* least, double* greatest) {
  Extremes e = {spread(*least), spread(*greatest)}, f = e;
  int i = 0;
  for (; n - i >= 8; i += 8) {
    e.take(load4(x + i));
    f.take(load4(x + i + 4));
  }
  for (; i < n; ++i) e.take(spread(x[i]));
  *least = least4(lesser(e.least, f.least));
  *greatest = -least4(-greater(e.greatest, f.greatest));
}

// `lanes` variables side by side, four at most.
template <class T>
void sweep_columns(const T* x, intptr_t stride, int lanes, int n, double* least, double* greatest) {
  Extremes e = {load4(least), load4(greatest)};
  const Doubles mask = first_four(lanes);
  if (lanes == 4)
    for (int i = 0; i < n; ++i, x += stride) e.take(load4(x));
  else
    for (int i = 0; i < n; ++i, x += stride) e.take(load4(x, mask));
  store4(least, e.least);
  store4(greatest, e.greatest);
}

template <class T>
void sweep(const Observations<T>& data, double* least, double* greatest) {
  constexpr int block_bytes = 0x4000;
  const int n = data.n, p = data.p;
  if (data.rows || p == 1) {
    for (int j = 0; j < p; ++j) sweep_row(data.variable(j), n, least + j, greatest + j);
    return;
  }
  int block = block_bytes / int(sizeof(T)) / p;
  if (block < 16) block = 16;
  for (int first = 0, count; first < n; first += count) {
    count = n - first < block ? n - first : block;
    for (int j = 0; j < p; j += 4)
      sweep_columns(data.x + intptr_t(first) * p + j, p, p - j < 4 ? p - j : 4, count, least + j,
                    greatest + j);
  }
}

constexpr double kInfinity = __builtin_inf();

// A NaN among the running values, which nothing would replace, stands for nothing seen.
inline double seed(double running, double nothing) { return running != running ? nothing : running; }

template <class T>
int compute(SSTask* task, unsigned estimates, unsigned method) {
  if (const int status = check_data<T>(task)) return status;
  T* const least = estimates & KOB_SS_MINIMUM ? reals<T>(task->minimum) : nullptr;
  T* const greatest = estimates & KOB_SS_MAXIMUM ? reals<T>(task->maximum) : nullptr;
  if (estimates & KOB_SS_MINIMUM && !least) return KOB_SS_ERROR_MINIMUM;
  if (estimates & KOB_SS_MAXIMUM && !greatest) return KOB_SS_ERROR_MAXIMUM;
  if (!(method & (KOB_SS_FAST | KOB_SS_ONE_PASS))) return KOB_SS_ERROR_METHOD;
  if (!least && !greatest) return KOB_SS_OK;

  // The running values are copied, with room for the last four variables; those not wanted are not written
  // back.
  const Observations<T> data(task);
  const int size = (data.p + 3) & ~3;
  Block<double> running;
  if (!running.allocate_zeros(2 * int64_t(size))) return KOB_SS_ERROR_MEMORY;
  double *low = running.get(), *high = low + size;
  for (int j = 0; j < data.p; ++j) {
    if (least) low[j] = seed(least[j], kInfinity);
    if (greatest) high[j] = seed(greatest[j], -kInfinity);
  }
  sweep(data, low, high);
  const Selection wanted(task);
  for (int j = 0; j < data.p; ++j) {
    if (!wanted[j]) continue;
    if (least) least[j] = T(low[j]);
    if (greatest) greatest[j] = T(high[j]);
  }
  return KOB_SS_OK;
}

// The extremes of two tasks: those of `other` are so many more values.
template <class T>
int join(SSTask* task, const SSTask* other, unsigned estimates) {
  for (const SSTask* t : {static_cast<const SSTask*>(task), other}) {
    if (const int status = check_task<T>(t)) return status;
    if (const int status = check_dimension(t)) return status;
    if (estimates & KOB_SS_MINIMUM && !t->minimum) return KOB_SS_ERROR_MINIMUM;
    if (estimates & KOB_SS_MAXIMUM && !t->maximum) return KOB_SS_ERROR_MAXIMUM;
  }
  if (value(task, task->dimension) != value(other, other->dimension)) return KOB_SS_ERROR_DIMENSION;
  const Selection wanted(task);
  for (int j = 0; j < low_word(task->dimension); ++j) {
    if (!wanted[j]) continue;
    if (estimates & KOB_SS_MINIMUM) {
      T& least = reals<T>(task->minimum)[j];
      const T x = reals<T>(other->minimum)[j];
      if (x < least || least != least) least = x;
    }
    if (estimates & KOB_SS_MAXIMUM) {
      T& greatest = reals<T>(task->maximum)[j];
      const T x = reals<T>(other->maximum)[j];
      if (x > greatest || greatest != greatest) greatest = x;
    }
  }
  return KOB_SS_OK;
}

}  // namespace orx::ss::minmax
