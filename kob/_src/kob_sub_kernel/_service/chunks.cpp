// The list of named data blocks that a stream carries.
#include "_service/chunks.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

#include "_service/shared_table.hpp"

using namespace orx;
using namespace orx::brng;

namespace orx::brng {

const KobChunk* find_chunk(const KobStream* stream, uint32_t kind) {
  const KobChunk* chunk = chunks(stream);
  while (chunk && chunk->ChunkId != kind) chunk = chunk->Next;
  return chunk;
}

int find_or_add_chunk(KobStream* stream, ChunkKind kind, uint32_t size, void** data) {
  *data = __kobSearchChunk(stream, kind);
  if (*data) return KOB_STATUS_OK;
  Block<unsigned char> fresh;
  if (!fresh.allocate_zeros(size)) return KOB_ERROR_MEM_FAILURE;
  const int status = __kobAddChunk(stream, kind, nullptr, fresh.get(), size);
  if (status == KOB_STATUS_OK) *data = fresh.release();
  return status;
}

// Compared when the stream has its reference: until then another thread may enter or delete the name.
int give_loaded_chunk(KobStream* stream, uint32_t kind, const KobGlobalId& name, Block<unsigned char> data,
                      uint32_t size) {
  const int status = __kobAddChunk(stream, kind, &name, data.get(), size);
  if (status != KOB_STATUS_OK) return status;
  KobChunk& chunk = *chunks(stream);
  const bool shares = chunk.Data != data.get();
  if (shares && shared_size(name) == size && !memcmp(chunk.Data, data.get(), size)) return KOB_STATUS_OK;
  if (shares) {
    __kobUnregisterGlobRODataReference(&chunk.GlobalId);
    chunk.GlobalId = {};
  }
  chunk.Data = data.release();
  return KOB_STATUS_OK;
}

}  // namespace orx::brng

ORX_API int __kobAddChunk(KobStream* stream, uint32_t chunk_id, const KobGlobalId* global_id, void* data,
                          uint32_t size) {
  KobChunk* chunk = allocate_array<KobChunk>(1);
  if (!chunk) return KOB_ERROR_MEM_FAILURE;
  *chunk = {chunk_id, size, data, chunks(stream), global_id ? *global_id : KobGlobalId{}};
  share(chunk);
  stream->Chunks = reinterpret_cast<uintptr_t>(chunk);
  return KOB_STATUS_OK;
}

ORX_API void* __kobSearchChunk(const KobStream* stream, uint32_t chunk_id) {
  const KobChunk* chunk = find_chunk(stream, chunk_id);
  return chunk ? chunk->Data : nullptr;
}

ORX_API int __kobGetNumChunks(const KobStream* stream) {
  int count = 0;
  for (const KobChunk* chunk = chunks(stream); chunk; chunk = chunk->Next) ++count;
  return count;
}

static int copy_chunk(KobStream* dest, const KobChunk& source) {
  if (is_shared(source.GlobalId))
    return __kobAddChunk(dest, source.ChunkId, &source.GlobalId, source.Data, source.Size);
  Block<unsigned char> data(std::max(source.Size, 1u));
  if (!data) return KOB_ERROR_MEM_FAILURE;
  memcpy(data.get(), source.Data, source.Size);
  return give_chunk(dest, source.ChunkId, &source.GlobalId, std::move(data), source.Size);
}

ORX_API int __kobCopyChunks(KobStream* dest, const KobStream* source) {
  for (const KobChunk* chunk = chunks(source); chunk; chunk = chunk->Next) {
    const int status = copy_chunk(dest, *chunk);
    if (status != KOB_STATUS_OK) {
      __kobDeleteChunks(dest);
      return status;
    }
  }
  return KOB_STATUS_OK;
}

ORX_API int __kobDeleteChunks(KobStream* stream) {
  for (KobChunk *chunk = chunks(stream), *next; chunk; chunk = next) {
    next = chunk->Next;
    if (__kobUnregisterGlobRODataReference(&chunk->GlobalId) != KOB_STATUS_OK) free_array(chunk->Data);
    free_array(chunk);
  }
  stream->Chunks = 0;
  return KOB_STATUS_OK;
}
