// Aligned memory. The pointer that malloc gave stands in the word before the block.
#include <atomic>
#include <cstdint>
#include <cstdlib>

#include "orx/serv.h"

#define ORX_API extern "C" __attribute__((visibility("default")))

namespace {
std::atomic<long> live_blocks{0};
std::atomic<long> fail_countdown{0};

bool told_to_fail() {
  long left = fail_countdown.load(std::memory_order_relaxed);
  while (left > 0 && !fail_countdown.compare_exchange_weak(left, left - 1)) {
  }
  return left == 1;
}
}  // namespace

ORX_API void* orx_serv_allocate(size_t size, size_t alignment) {
  if (told_to_fail()) return nullptr;
  if (alignment < sizeof(void*)) alignment = sizeof(void*);
  const size_t total = size + alignment + sizeof(void*);
  if (total < size) return nullptr;
  void* base = std::malloc(total);
  if (!base) return nullptr;
  const uintptr_t start = reinterpret_cast<uintptr_t>(base) + sizeof(void*);
  void** block = reinterpret_cast<void**>((start + alignment - 1) & ~(uintptr_t(alignment) - 1));
  block[-1] = base;
  ++live_blocks;
  return block;
}

ORX_API void orx_serv_deallocate(void* block) {
  if (!block) return;
  --live_blocks;
  std::free(static_cast<void**>(block)[-1]);
}

ORX_API void orx_serv_fail_allocation(long k) { fail_countdown = k; }
ORX_API long orx_serv_live_blocks() { return live_blocks; }
