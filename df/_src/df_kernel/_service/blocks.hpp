// Work on long arrays in blocks: groups of blocks as items for the workers, then the blocks left over one by
// one, then the tail on the calling thread.
#pragma once

#include <algorithm>
#include <cstdint>

#include "_service/task.hpp"

namespace orx::df {

struct BlockWork {
  Index count;     // elements in all
  Index first;     // the first element of item 0 ...
  Index block;     // ... elements per block ...
  Index per_item;  // ... and blocks per item of the current round
  int32_t status;  // the first failure
};

inline void report(BlockWork* work, int32_t status) {
  int32_t none = ORX_DF_OK;
  if (status < 0)
    __atomic_compare_exchange_n(&work->status, &none, status, false, __ATOMIC_RELAXED, __ATOMIC_RELAXED);
}

// What a worker does with item i: run(first, count) block by block, until one fails.
template <class Run>
void run_item(BlockWork* work, int i, Run run) {
  Index at = work->first + i * work->block * work->per_item;
  const Index end = std::min(at + work->block * work->per_item, work->count);
  for (; at < end && __atomic_load_n(&work->status, __ATOMIC_RELAXED) == ORX_DF_OK; at += work->block)
    report(work, run(at, std::min(work->block, end - at)));
}

// Runs `worker` over all elements, in groups of `group` blocks on up to `threads` threads. Returns the first
// failure.
inline int32_t run_blocks(BlockWork* work, Index group, int32_t threads, const ThreadingServices* threading,
                          orx_worker worker) {
  const auto round = [&](Index per_item, bool whole) {
    work->per_item = per_item;
    const Index size = per_item * work->block, left = work->count - work->first;
    const auto items = int32_t(whole ? left / size : left > 0);
    if (threads > 1 && whole && items > 0) {
      threading->parallelFor(items, std::min(items, threads), work, worker);
    } else {
      for (int32_t i = 0; i < items; ++i) worker(i, 0, 1, work);
    }
    work->first += items * size;
  };
  work->status = ORX_DF_OK;
  work->first = 0;
  round(group, true);
  round(1, true);
  round(1, false);
  return work->status;
}

}  // namespace orx::df
