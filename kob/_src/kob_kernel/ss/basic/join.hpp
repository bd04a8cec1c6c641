// Results of two tasks, joined.
#pragma once

#include "basic/basic.hpp"

namespace orx::ss::basic {

// The results of a task as if worker 0 had just computed them.
template <class T>
void load_results(const Computation<T>& c, const SSTask* task, const Earlier<T>& from) {
  const State state = c.state(0);
  c.accumulator(0)[0] = from.W;
  c.accumulator(0)[1] = from.W2;
  for (int j = 0; j < c.p(); ++j) {
    const double mean = from(kMean, j);
    if (c.method == KOB_SS_ONE_PASS)
      (mean - mean == 0 ? state[kMean] : state[kMeanLow])[j] = mean;  // see add_to_mean
    else if (c.method == KOB_SS_FAST)
      state[kMean][j] = from.W * mean;
    for (int k = kRaw2; k <= kRaw4; ++k) state[k][j] = from.W * from(k, j);
    for (int order = 2; order <= 4; ++order)
      state[central_array(order)][j] = from.central_sum(order, j, c.method);
  }
  if (!c.cross) return;
  const intptr_t size = intptr_t(c.p()) * c.p();
  rebuild_products(c, task, from, c.other_products);
  for (intptr_t i = 0; i < size; ++i) c.first_products[i] += c.other_products[i];
}

inline int check_join(const SSTask* task, const SSTask* other, unsigned wanted) {
  for (const SSTask* t : {task, other}) {
    if (const int status = check_dimension(t)) return status;
    if (const int status = check_arrays(t, wanted)) return status;
    if (!t->accumWeight) return KOB_SS_ERROR_ACCUMULATED_WEIGHTS;
  }
  return value(task, task->dimension) == value(other, other->dimension) ? KOB_SS_OK : KOB_SS_ERROR_DIMENSION;
}

// Folds the results of `other` into those of `task`.
template <class T>
int join(SSTask* task, const SSTask* other, unsigned requested, unsigned method,
         const KernelTables<T>& tables) {
  if (const int status = check_task<T>(task)) return status;
  if (const int status = check_task<T>(other)) return status;
  const unsigned wanted = widen(requested);
  if (const int status = check_join(task, other, wanted)) return status;
  method &= KOB_SS_FAST | KOB_SS_ONE_PASS | KOB_SS_USER_MEAN;
  if (__builtin_popcount(method) != 1) return KOB_SS_ERROR_METHOD;
  const Earlier<T> from(other);
  if (!(from.W > 0)) return KOB_SS_OK;

  Computation<T> c(task, wanted, method);
  choose_kernel(c, tables);
  c.workers = 2;  // the second one's products take those of `other`
  if (const int status = _vSSInitBasic(c)) return status;
  load_results(c, other, from);
  finish(c);
  return KOB_SS_OK;
}

}  // namespace orx::ss::basic
