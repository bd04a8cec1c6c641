// The list of named data blocks that a stream carries.
#include "_service/chunks.hpp"

#include <cstring>

#include "_service/shared_table.hpp"

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
  void* fresh = allocate(size);
  if (!fresh) return KOB_ERROR_MEM_FAILURE;
  memset(fresh, 0, size);
  const int status = __kobAddChunk(stream, kind, nullptr, fresh, size);
  if (status != KOB_STATUS_OK) {
    orx_serv_deallocate(fresh);
    return status;
  }
  *data = fresh;
  return KOB_STATUS_OK;
}

}  // namespace orx::brng

ORX_API int __kobAddChunk(KobStream* stream, uint32_t chunk_id, const KobGlobalId* global_id, void* data,
                          uint32_t size) {
  KobChunk* chunk = static_cast<KobChunk*>(allocate(sizeof(KobChunk)));
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
  void* data = source.Data;
  const bool shared = is_shared(source.GlobalId);
  if (!shared) {
    data = allocate(source.Size);
    if (!data) return KOB_ERROR_MEM_FAILURE;
    memcpy(data, source.Data, source.Size);
  }
  const int status = __kobAddChunk(dest, source.ChunkId, &source.GlobalId, data, source.Size);
  if (status != KOB_STATUS_OK && !shared) orx_serv_deallocate(data);
  return status;
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
    if (__kobUnregisterGlobRODataReference(&chunk->GlobalId) != KOB_STATUS_OK)
      orx_serv_deallocate(chunk->Data);
    orx_serv_deallocate(chunk);
  }
  stream->Chunks = 0;
  return KOB_STATUS_OK;
}
