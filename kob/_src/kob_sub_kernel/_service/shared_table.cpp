// The process's table of read-only blocks that several streams share, under one spin lock. Each function
// takes the lock for its own scan; between two of them a reference that the caller holds is what keeps an
// entry from going.
#include "_service/shared_table.hpp"

#include <immintrin.h>
#include <x86intrin.h>

#include <algorithm>
#include <cstring>

#include "orx/base/memory.hpp"

namespace orx::brng {
namespace {

constexpr int kSlots = 128;

}  // namespace

extern "C" {
KobGlobalEntry _GlobRODataTable[kSlots];
int _GlobRODataTableCount;
}

namespace {

int lock_word;
uint64_t last_stamp;  // under the lock

class Lock {
 public:
  Lock() {
    int free = 0;
    while (!__atomic_compare_exchange_n(&lock_word, &free, 1, false, __ATOMIC_ACQUIRE, __ATOMIC_RELAXED)) {
      free = 0;
      _mm_pause();
    }
  }
  ~Lock() { __atomic_store_n(&lock_word, 0, __ATOMIC_RELEASE); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
};

// Under the lock. The first entry of that name from `entry` on, null when there is none; an id that is null
// or all zero names none.
KobGlobalEntry* find(const KobGlobalId* id, KobGlobalEntry* entry = _GlobRODataTable) {
  if (!id || !is_named(*id)) return nullptr;
  for (; entry < _GlobRODataTable + _GlobRODataTableCount; ++entry)
    if (!memcmp(&entry->EntryId, id, sizeof *id)) return entry;
  return nullptr;
}

// Under the lock. Enters a block with one reference; null when `limit` places are taken.
KobGlobalEntry* enter(const KobGlobalEntry& entry, int limit) {
  if (_GlobRODataTableCount >= limit) return nullptr;
  _GlobRODataTable[_GlobRODataTableCount] = entry;
  return &_GlobRODataTable[_GlobRODataTableCount++];
}

// Under the lock. Makes the chunk share an entry's block.
void refer(KobChunk* chunk, KobGlobalEntry* entry) {
  ++entry->RefCount;
  chunk->Data = entry->Data;
}

}  // namespace

bool is_shared(const KobGlobalId& id) {
  const Lock lock;
  return find(&id);
}

uint32_t shared_size(const KobGlobalId& id) {
  const Lock lock;
  const KobGlobalEntry* entry = find(&id);
  return entry ? entry->Size : 0;
}

// One lock for the look-up and the entry: two threads must not enter one name twice.
void share(KobChunk* chunk) {
  if (!is_named(chunk->GlobalId)) return;
  const Lock lock;
  if (KobGlobalEntry* entry = find(&chunk->GlobalId))
    refer(chunk, entry);
  else if (!enter({chunk->GlobalId, 1, chunk->Data, chunk->Size}, kSlots - 1))
    chunk->GlobalId = {};
}

}  // namespace orx::brng

using namespace orx;
using namespace orx::brng;

ORX_API int __kobFindGlobRODataTableEntry(KobGlobalEntry** entry, const KobGlobalId* id) {
  const Lock lock;
  KobGlobalEntry* found = find(id);
  if (!found) return KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND;
  *entry = found;
  return KOB_STATUS_OK;
}

ORX_API int __kobGenerateNewGlobalRODataTableEntryId(KobGlobalId* id, int32_t value) {
  const Lock lock;
  do {
    // Never the same stamp twice: the name is the caller's alone from here on, before it is entered.
    last_stamp = std::max<uint64_t>(__rdtsc(), last_stamp + 1);
    const uint64_t half[2] = {last_stamp, uint64_t(int64_t(value))};
    memcpy(id, half, sizeof half);
  } while (find(id));
  return KOB_STATUS_OK;
}

ORX_API int __kobCreateGlobRODataTableEntry(KobGlobalEntry** entry, const KobGlobalId* id, void* data) {
  const Lock lock;
  KobGlobalEntry* const entered = enter({*id, 1, data, 0}, kSlots);
  if (!entered) return KOB_ERROR_GLOBAL_TABLE_FULL;
  *entry = entered;
  return KOB_STATUS_OK;
}

ORX_API int __kobRegisterGlobRODataReference(KobChunk* chunk, const KobGlobalId* id) {
  const Lock lock;
  KobGlobalEntry* entry = find(id);
  if (!entry) return KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND;
  refer(chunk, entry);
  return KOB_STATUS_OK;
}

// The scan goes on behind a match: nothing keeps a caller from entering one name twice.
ORX_API int __kobUnregisterGlobRODataReference(const KobGlobalId* id) {
  int status = KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND;
  const Lock lock;
  for (KobGlobalEntry* entry = find(id); entry; entry = find(id, entry)) {
    status = KOB_STATUS_OK;
    if (--entry->RefCount > 0) {
      ++entry;
      continue;
    }
    free_array(entry->Data);
    *entry = _GlobRODataTable[--_GlobRODataTableCount];
  }
  return status;
}
