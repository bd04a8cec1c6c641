// What a task keeps of a stream. The same records serve both precisions.
#pragma once

#include "orx/base/memory.hpp"
#include "ss_task.hpp"

namespace orx::ss::squantiles {

// Level l of a block is row l of the three arrays, which have levelSize + 1 elements in a row and levelCount
// + 1 rows.
struct StreamBlock {
  int observed;   // observations that it has taken
  int levelSize;  // of level 0, which collects raw values
  int levelCount;
  int topLevel;   // the highest level ever occupied
  int fill;       // values in level 0
  int* occupied;  // whether level l holds a summary
  void* values;   // the start of the one block of memory that holds all four arrays
  int* rMin;
  int* rMax;
};

struct StreamVariable {
  int blockCount;
  int currentBlock;  // -1 before there is one
  int active;        // 0 if the first call did not ask for this variable
  StreamBlock* blocks;
};

#if defined(__i386__)
static_assert(sizeof(StreamVariable) == 16);
#endif

// What the first call fixes: the task may be edited later, but the sizes of blocks may not change.
struct StreamState {
  double eps;
  int count;  // of the variables, whose records follow

  StreamVariable* variables() { return reinterpret_cast<StreamVariable*>(this + 1); }
};

inline StreamState* state_of(const SSTask* task) { return static_cast<StreamState*>(task->streamState); }

inline void drop_last_block(StreamVariable& variable) {
  free_array(variable.blocks[--variable.blockCount].values);
  --variable.currentBlock;
}

}  // namespace orx::ss::squantiles
