// Aligned memory, with a count of live blocks and failure on order for tests.
//
// posix_memalign and not a block carved out of a larger malloc: the address sanitizer then sees the very
// bounds of each block.
#include <atomic>
#include <cstdint>
#include <cstdlib>

#include "orx/base/api.hpp"
#include "orx/serv.h"

namespace {

std::atomic<long> live_blocks{0};
std::atomic<long> calls_to_failure{0};  // 1: the next call fails; 0: no order

bool told_to_fail() {
  long left = calls_to_failure.load(std::memory_order_relaxed);
  while (left > 0 && !calls_to_failure.compare_exchange_weak(left, left - 1)) {
  }
  return left == 1;
}

}  // namespace

ORX_API void* orx_serv_allocate(size_t size, size_t alignment) {
  if (told_to_fail()) return nullptr;
  if (alignment < sizeof(void*)) alignment = sizeof(void*);
  // No object is larger than PTRDIFF_MAX; asking for one must not reach an allocator that aborts on it.
  if (size > PTRDIFF_MAX || alignment > PTRDIFF_MAX - size) return nullptr;
  void* block;
  if (posix_memalign(&block, alignment, size) != 0) return nullptr;
  ++live_blocks;
  return block;
}

ORX_API void orx_serv_deallocate(void* block) {
  if (!block) return;
  --live_blocks;
  std::free(block);
}

ORX_API void orx_serv_fail_allocation(long k) { calls_to_failure = k; }

ORX_API long orx_serv_live_blocks() { return live_blocks; }
