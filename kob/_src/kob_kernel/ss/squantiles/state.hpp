// What a task keeps of a stream. The same records serve both precisions.
#pragma once

#include "orx/base/memory.hpp"
#include "ss_task.hpp"

namespace orx::ss::squantiles {

// Values of a stream in order, each of which stands for 2^level of them. The number of values up to some x that a
// run tells is not below the true one, and exceeds it by not more than 2 error.
struct Run {
  void* values;
  int count;
  int level;
  double error;
};

// The runs of finished blocks come first, then those of the present one, by falling level.
struct StreamVariable {
  int64_t observed;
  double greatest;  // of the values in runs
  void* raw;        // room for `size` values, of which `fill` are there
  Run* runs;
  int size, fill;
  int run_count, run_room;
  int first_run;  // of the present block
  int block;      // number of the present block
  int active;     // 0 if the first call did not ask for this variable
};

// What the first call fixes: the task may be edited later, but the sizes of blocks may not change.
struct StreamState {
  double eps;
  int count;  // of the variables, whose records follow

  StreamVariable* variables() { return reinterpret_cast<StreamVariable*>(this + 1); }
  const StreamVariable* variables() const { return reinterpret_cast<const StreamVariable*>(this + 1); }
};
static_assert(sizeof(StreamState) % alignof(StreamVariable) == 0);

inline StreamState* state_of(const SSTask* task) { return static_cast<StreamState*>(task->streamState); }

inline void free_variable(StreamVariable& variable) {
  for (int k = 0; k < variable.run_count; ++k) free_array(variable.runs[k].values);
  free_array(variable.runs);
  free_array(variable.raw);
}

// A state of `count` variables that have seen nothing.
inline StreamState* new_state(double eps, int count) {
  Block<char> memory;
  if (!memory.allocate_zeros(int64_t(sizeof(StreamState)) + count * int64_t(sizeof(StreamVariable))))
    return nullptr;
  StreamState* state = reinterpret_cast<StreamState*>(memory.release());
  state->eps = eps;
  state->count = count;
  return state;
}

inline void free_state(StreamState*& state) {
  if (!state) return;
  for (int v = 0; v < state->count; ++v) free_variable(state->variables()[v]);
  free_array(state);
}

// The task owns the state from now on.
inline void adopt_state(SSTask* task, StreamState* state) {
  __kobSQuantilesFreeBuffers(task);
  task->streamState = state;
  task->cleanup = __kobSQuantilesFreeBuffers;
  task->cleanupCount = 1;
}

}  // namespace orx::ss::squantiles
