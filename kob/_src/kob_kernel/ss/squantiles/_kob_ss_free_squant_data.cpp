#include "squantiles/state.hpp"

using namespace orx::ss::squantiles;

ORX_API void __kobSQuantilesFreeBuffers(SSTask* task) {
  StreamState* state = state_of(task);
  if (!state) return;
  for (int v = 0; v < state->count; ++v) {
    StreamVariable& variable = state->variables()[v];
    while (variable.blockCount > 0) drop_last_block(variable);
    orx::free_array(variable.blocks);
  }
  orx::free_array(task->streamState);
}
