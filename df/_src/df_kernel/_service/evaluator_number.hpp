// Which evaluator, and which integrator, serves a task.
#pragma once

#include "_service/checks.hpp"
#include "_service/task.hpp"

namespace orx::df {

// The order of the dispatch tables; there is no integrator for look-up.
enum EvaluatorNumber : int32_t {
  kLinear,
  kQuadratic,
  kCubic,
  kSubbotin,
  kArbitrary,
  kStepLeft,
  kStepRight,
  kLookUp,
  kEvaluatorCount
};

constexpr int32_t kFewSitesOrders = kCubic + 1;  // the first of these serve short calls

// By order and kind, or a status. A task without a spline can be served by call-backs for all parts of the
// line.
template <class Real>
int32_t evaluator_number(const Task<Real>* task, bool all_callbacks) {
  const int64_t order = task->splineOrder, kind = task->splineKind;
  if (order == ORX_DF_STEPWISE) {
    if (kind == ORX_DF_STEP_LEFT_CONTINUOUS) return kStepLeft;
    if (kind == ORX_DF_STEP_RIGHT_CONTINUOUS) return kStepRight;
    if (kind == ORX_DF_LOOK_UP) return kLookUp;
    return all_callbacks ? int32_t(kArbitrary) : ORX_DF_ERROR_SPLINE_KIND;
  }
  if (order == ORX_DF_LINEAR) return kLinear;
  if (order == ORX_DF_QUADRATIC && kind == ORX_DF_DEFAULT) return kQuadratic;
  if (order == ORX_DF_QUADRATIC && kind == ORX_DF_SUBBOTIN) return kSubbotin;
  const bool cubic_kind = kind == ORX_DF_DEFAULT || (kind >= ORX_DF_NATURAL && kind <= ORX_DF_AKIMA);
  if (order == ORX_DF_CUBIC && cubic_kind) return kCubic;
  return order > ORX_DF_CUBIC ? int32_t(kArbitrary) : ORX_DF_ERROR_SPLINE_KIND;
}

// Whether the coefficients, or the values of a step function, are there.
template <class Real>
int32_t check_spline_data(const Task<Real>* task, EvaluatorNumber evaluator) {
  if (evaluator == kStepLeft || evaluator == kStepRight || evaluator == kLookUp) return check_values(task);
  if (evaluator == kArbitrary && task->splineOrder > PTRDIFF_MAX / int64_t(sizeof(Real)) / task->gridSize)
    return ORX_DF_ERROR_MEMORY;
  return check_coeffs(task);
}

}  // namespace orx::df
