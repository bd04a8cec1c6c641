#include "squantiles/state.hpp"

using namespace orx::ss::squantiles;

ORX_API void __kobSQuantilesFreeBuffers(SSTask* task) {
  StreamState* state = state_of(task);
  free_state(state);
  task->streamState = nullptr;
}
