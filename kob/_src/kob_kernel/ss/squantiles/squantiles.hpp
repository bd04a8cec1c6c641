// Quantiles of a stream to a rank error of eps, in memory that grows as a power of the logarithm of its length.
#pragma once

#include "orx/base/first_failure.hpp"
#include "orx/base/threading.hpp"
#include "squantiles/summary.hpp"

namespace orx::ss::squantiles {

template <class T>
int check(const SSTask* task) {
  if (const int status = check_task<T>(task)) return status;
  if (const int status = check_dimension(task)) return status;
  if (const int status = check_count(task, task->observationCount, KOB_SS_ERROR_OBSERVATION_COUNT))
    return status;
  if (value(task, task->observationCount) != 0) {
    if (!task->observations) return KOB_SS_ERROR_OBSERVATIONS;
    const int storage = observation_storage(task->obsStorage);
    if (storage < 0) return storage;
  }
  return KOB_SS_OK;
}

template <class T>
int check_parameters(const SSTask* task, unsigned method) {
  if (!task->streamQuantiles) return KOB_SS_ERROR_STREAM_QUANTILES;
  if (!task->streamOrders) return KOB_SS_ERROR_STREAM_ORDERS;
  if (const int status = check_count(task, task->streamOrderCount, KOB_SS_ERROR_STREAM_ORDER_COUNT))
    return status;
  if (!task->streamParamCount) return KOB_SS_ERROR_STREAM_PARAMETER_COUNT;
  if (value(task, task->streamParamCount) != 1) return KOB_SS_ERROR_STREAM_PARAMETER_COUNT_VALUE;
  if (!orders_in_range(reals<T>(task->streamOrders), low_word(task->streamOrderCount)))
    return KOB_SS_ERROR_STREAM_ORDER_COUNT;
  if (!task->streamParams) return KOB_SS_ERROR_STREAM_PARAMETERS;
  if (!(method & (KOB_SS_STREAM_QUANTILES | KOB_SS_STREAM_UPDATE))) return KOB_SS_ERROR_METHOD;
  const T eps = reals<T>(task->streamParams)[0];
  return eps > 0 && eps <= 1 ? KOB_SS_OK : KOB_SS_ERROR_STREAM_EPS;
}

// The first call says which variables are followed.
template <class T>
int start(SSTask* task) {
  StreamState* state = new_state(double(reals<T>(task->streamParams)[0]), low_word(task->dimension));
  if (!state) return KOB_SS_ERROR_MEMORY;
  const Selection wanted(task);
  for (int v = 0; v < state->count; ++v) state->variables()[v].active = wanted[v];
  adopt_state(task, state);
  return KOB_SS_OK;
}

// A later call may ask for fewer variables, but not for new ones, nor for none.
inline int check_wanted(const SSTask* task, int p) {
  const StreamVariable* variables = state_of(task)->variables();
  const Selection wanted(task);
  if (wanted.all()) return KOB_SS_OK;
  bool any = false;
  for (int v = 0; v < p; ++v) {
    if (wanted[v] && !variables[v].active) return KOB_SS_ERROR_INDICES;
    any = any || variables[v].active;
  }
  return any ? KOB_SS_OK : KOB_SS_ERROR_INDICES;
}

template <class T>
struct Addition {
  explicit Addition(const SSTask* task) : data(task), state(state_of(task)) {}

  Observations<T> data;
  StreamState* state;
  FirstFailure failure;
};

template <class T>
void _vSSSQuantilesAddDataThreader(int v, int, int, void* arguments) {
  Addition<T>& addition = *static_cast<Addition<T>*>(arguments);
  const Observations<T>& data = addition.data;
  StreamVariable& variable = addition.state->variables()[v];
  if (variable.active && !add(variable, addition.state->eps, data.variable(v), data.stride(), data.n))
    addition.failure.report(KOB_SS_ERROR_MEMORY);
}

template <class T>
int compute(SSTask* task, unsigned method, const ThreadingServices* services) {
  if (const int status = check<T>(task)) return status;
  if (const int status = check_parameters<T>(task, method)) return status;
  const bool first_call = !task->streamState;
  if (first_call)
    if (const int status = start<T>(task)) return status;
  const StreamState& state = *state_of(task);
  const int now = low_word(task->dimension), p = now < state.count ? now : state.count;
  if (!first_call)
    if (const int status = check_wanted(task, p)) return status;
  if (low_word(task->observationCount) > 0) {
    Addition<T> addition(task);
    threading_or_serial(services)->parallelFor(p, 0, &addition, _vSSSQuantilesAddDataThreader<T>);
    if (const int status = addition.failure.status()) return status;
  }
  if (!(method & KOB_SS_STREAM_QUANTILES)) return KOB_SS_OK;

  const int order_count = low_word(task->streamOrderCount);
  T* results = reals<T>(task->streamQuantiles);
  for (int v = 0; v < p; ++v) {
    const StreamVariable& variable = state.variables()[v];
    if (!variable.active) continue;
    if (const int status = query(variable, reals<T>(task->streamOrders), order_count, results)) return status;
    results += order_count;
  }
  return KOB_SS_OK;
}

}  // namespace orx::ss::squantiles
