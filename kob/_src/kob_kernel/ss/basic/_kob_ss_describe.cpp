// The common case in one call.
#include "orx/base/memory.hpp"
#include "ss_task.hpp"

namespace orx::ss {

namespace {

// What a precision calls.
template <class T>
struct Functions {
  int (*new_task)(SSTask**, const void*, const void*, const void*, const T*, const T*, const void*, int);
  int (*basic)(SSTask*, long long, long long, const ThreadingServices*);
  int (*minmax)(SSTask*, long long, long long, const ThreadingServices*);
};

template <class T>
struct Results {
  T *mean, *variance, *skewness, *kurtosis, *minimum, *maximum;
};

// A result that was asked for: its estimate, its field and its array.
template <class T>
struct Wanted {
  int estimate;
  void* SSTask::*field;
  T* array;
};

// Where the caller has no array for a result that others are made from, there is one in `scratch`.
template <class T>
int compute(SSTask* task, int p, const Results<T>& to, T* scratch, const Functions<T>& call,
            const ThreadingServices* threading) {
  void* SSTask::*const intermediate[] = {
      &SSTask::mean,           &SSTask::rawMoment2,     &SSTask::rawMoment3,    &SSTask::rawMoment4,
      &SSTask::centralMoment2, &SSTask::centralMoment3, &SSTask::centralMoment4};
  for (const auto field : intermediate) {
    task->*field = scratch;
    scratch += p;
  }
  const Wanted<T> wanted[] = {{KOB_SS_MEAN, &SSTask::mean, to.mean},
                              {KOB_SS_CENTRAL_MOMENT_2, &SSTask::centralMoment2, to.variance},
                              {KOB_SS_SKEWNESS, &SSTask::skewness, to.skewness},
                              {KOB_SS_KURTOSIS, &SSTask::kurtosis, to.kurtosis},
                              {KOB_SS_MINIMUM, &SSTask::minimum, to.minimum},
                              {KOB_SS_MAXIMUM, &SSTask::maximum, to.maximum}};
  int estimates = 0;
  for (const Wanted<T>& w : wanted) {
    if (!w.array) continue;
    estimates |= w.estimate;
    task->*w.field = w.array;
  }
  constexpr int extremes = KOB_SS_MINIMUM | KOB_SS_MAXIMUM;
  if (estimates & ~extremes)
    if (const int status = call.basic(task, estimates & ~extremes, KOB_SS_ONE_PASS, threading)) return status;
  if (!(estimates & extremes)) return KOB_SS_OK;
  for (int j = 0; j < p; ++j) {  // nothing seen yet
    if (to.minimum) to.minimum[j] = T(__builtin_nan(""));
    if (to.maximum) to.maximum[j] = T(__builtin_nan(""));
  }
  return call.minmax(task, estimates & extremes, KOB_SS_ONE_PASS, threading);
}

template <class T>
int describe(int p, int n, int storage, const T* x, const T* weights, const Results<T>& to,
             const Functions<T>& call, const ThreadingServices* threading) {
  constexpr int intermediate_count = 7;
  if (p > 0 && !x) return KOB_SS_ERROR_OBSERVATIONS;
  SSTask* task;
  if (const int status = call.new_task(&task, &p, &n, &storage, x, weights, nullptr, 0)) return status;
  const Block<T> scratch(int64_t(intermediate_count) * p);
  const int status = scratch ? compute(task, p, to, scratch.get(), call, threading) : KOB_SS_ERROR_MEMORY;
  __kobSSDeleteTask(&task);
  return status;
}

}  // namespace

}  // namespace orx::ss

ORX_API int __kobdSSDescribe(int p, int n, int storage, const double* x, const double* weights, double* mean,
                             double* variance, double* skewness, double* kurtosis, double* minimum,
                             double* maximum, const ThreadingServices* threading) {
  return orx::ss::describe<double>(p, n, storage, x, weights,
                                   {mean, variance, skewness, kurtosis, minimum, maximum},
                                   {__kobdSSNewTask, _kobdSSBasic, _kobdSSMinmax}, threading);
}

ORX_API int __kobsSSDescribe(int p, int n, int storage, const float* x, const float* weights, float* mean,
                             float* variance, float* skewness, float* kurtosis, float* minimum,
                             float* maximum, const ThreadingServices* threading) {
  return orx::ss::describe<float>(p, n, storage, x, weights,
                                  {mean, variance, skewness, kurtosis, minimum, maximum},
                                  {__kobsSSNewTask, _kobsSSBasic, _kobsSSMinmax}, threading);
}
