// Tasks that a method makes for itself, over the data of the caller's.
#pragma once

#include "orx/base/threading.hpp"
#include "ss_task.hpp"

namespace orx::ss {

inline int basic(SSTask* task, unsigned estimates, unsigned method, const ThreadingServices* threading,
                 double) {
  return _kobdSSBasic(task, estimates, method, threading);
}
inline int basic(SSTask* task, unsigned estimates, unsigned method, const ThreadingServices* threading,
                 float) {
  return _kobsSSBasic(task, estimates, method, threading);
}

// A record that holds the data of a task and nothing else: all weights are 1, all variables wanted.
inline SSTask same_data(const SSTask* task) {
  SSTask inner = {};
  inner.ilp64Flag = task->ilp64Flag;
  inner.isDouble = task->isDouble;
  inner.dimension = task->dimension;
  inner.observationCount = task->observationCount;
  inner.observations = task->observations;
  inner.obsStorage = task->obsStorage;
  return inner;
}

// Mean and covariance, a whole matrix, of weighted observations, by one pass, and what the weights add up to.
template <class T>
struct WeightedCovariance {
  T W, W2;

  int compute(const SSTask* task, const T* weights, T* mean, T* cov, const ThreadingServices* threading) {
    int64_t full = KOB_SS_FULL;
    T sums[2] = {0, 0};
    SSTask inner = same_data(task);
    inner.weights = const_cast<T*>(weights);
    inner.accumWeight = sums;
    inner.mean = mean;
    inner.cov = cov;
    inner.covStorage = &full;
    const int status = basic(&inner, KOB_SS_COVARIANCE, KOB_SS_ONE_PASS, threading, T());
    W = sums[0];
    W2 = sums[1];
    return status;
  }
  // What turns the covariance into the mean of the weighted products, W of them.
  T freedom() const { return W - W2 / W; }
};

}  // namespace orx::ss
