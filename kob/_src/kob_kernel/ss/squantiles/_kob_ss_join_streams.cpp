// Joins the summaries of two tasks.
#include "squantiles/join.hpp"

namespace orx::ss::squantiles {

static int check_alike(const StreamState& a, const StreamState& b) {
  if (a.count != b.count) return KOB_SS_ERROR_DIMENSION;
  if (a.eps != b.eps) return KOB_SS_ERROR_STREAM_EPS;
  for (int v = 0; v < a.count; ++v)
    if (a.variables()[v].active != b.variables()[v].active) return KOB_SS_ERROR_INDICES;
  return KOB_SS_OK;
}

// A task that has seen nothing follows what the other one follows.
static StreamState* state_like(const StreamState& other) {
  StreamState* state = new_state(other.eps, other.count);
  for (int v = 0; state && v < other.count; ++v) state->variables()[v].active = other.variables()[v].active;
  return state;
}

static int join_tasks(SSTask* task, const SSTask* other) {
  if (!task || !other || task == other || task->isDouble != other->isDouble) return KOB_SS_ERROR_TASK;
  const StreamState* from = state_of(other);
  if (!from) return KOB_SS_OK;
  StreamState *to = state_of(task), *made = nullptr;
  if (to) {
    if (const int status = check_alike(*to, *from)) return status;
  } else {
    if (!task->dimension || value(task, task->dimension) != from->count) return KOB_SS_ERROR_DIMENSION;
    to = made = state_like(*from);
    if (!to) return KOB_SS_ERROR_MEMORY;
  }
  const int status = task->isDouble ? join_states<double>(*to, *from) : join_states<float>(*to, *from);
  if (made && status) free_state(made);
  if (made) adopt_state(task, made);
  return status;
}

}  // namespace orx::ss::squantiles

ORX_API int __kobSSJoinStreams(SSTask* task, const SSTask* other) {
  return orx::ss::squantiles::join_tasks(task, other);
}
