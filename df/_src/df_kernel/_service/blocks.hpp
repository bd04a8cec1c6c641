// Work on long arrays in blocks: groups of blocks as items for the workers, then the blocks left over one by
// one, then the tail on the calling thread.
#pragma once

#include <algorithm>
#include <cstdint>

#include "_service/task.hpp"
#include "orx/base/first_failure.hpp"

namespace orx::df {

struct BlockWork {
  Index count;     // elements in all
  Index origin;    // the first element of item 0 ...
  Index block;     // ... elements per block ...
  Index per_item;  // ... and blocks per item of the current round
  FirstFailure failure;
};

// What a worker does with item i: run(first, count) block by block, until one fails.
template <class Run>
void run_item(BlockWork* work, int i, Run run) {
  Index at = work->origin + i * work->block * work->per_item;
  const Index end = std::min(at + work->block * work->per_item, work->count);
  for (; at < end && work->failure.status() == ORX_DF_OK; at += work->block)
    work->failure.report(run(at, std::min(work->block, end - at)));
}

// Runs `worker` over all elements, in groups of `group` blocks on up to `threads` threads. Returns the first
// failure.
inline int32_t run_blocks(BlockWork* work, Index group, int32_t threads, const ThreadingServices* threading,
                          orx_worker worker) {
  const auto round = [&](Index per_item, bool whole) {
    work->per_item = per_item;
    const Index size = per_item * work->block, left = work->count - work->origin;
    const auto items = int32_t(whole ? left / size : left > 0);
    if (threads > 1 && whole && items > 0) {
      threading->parallelFor(items, std::min(items, threads), work, worker);
    } else {
      for (int32_t i = 0; i < items; ++i) worker(i, 0, 1, work);
    }
    work->origin += items * size;
  };
  work->origin = 0;
  round(group, true);
  round(1, true);
  round(1, false);
  return work->failure.status();
}

}  // namespace orx::df
