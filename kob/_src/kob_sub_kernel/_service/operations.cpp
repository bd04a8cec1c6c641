// Streams: making, copying, splitting and deleting them.
#include <algorithm>
#include <cstring>

#include "_service/chunks.hpp"
#include "_service/registry.hpp"
#include "orx/base/memory.hpp"

using namespace orx;
using namespace orx::brng;

namespace {

bool is_abstract(uint32_t id) {
  return id == KOB_BRNG_IABSTRACT || id == KOB_BRNG_DABSTRACT || id == KOB_BRNG_SABSTRACT;
}

// Of a state that many bytes are carried over as the generator has seed words: what a stream was split by stays
// its own. The direction numbers of points do not fit in there, and points of more dimensions need them all.
size_t bytes_to_move(const KobStream* dest, const KobStream* source, const KobBrngProperties& from) {
  const uint32_t family = (family_row(source) + 1) << 20;
  const bool points = family == KOB_BRNG_SOBOL || family == KOB_BRNG_NIEDERR;
  const size_t seeds = size_t(from.WordSize) * size_t(from.SeedCount);
  return points && family_row(dest) == family_row(source) ? state_bytes(from)
                                                          : std::min(seeds, state_bytes(from));
}

}  // namespace

ORX_API int __kobAllocateStream(KobStream** stream, const KobBrngProperties* table, uint32_t id,
                                uint32_t index, uint32_t offset) {
  const int status = __kobIsBrngValid(table, index, offset);
  if (status != KOB_STATUS_OK) return status;
  const size_t size = sizeof(KobStream) + state_bytes(table[index]);
  KobStream* const fresh = reinterpret_cast<KobStream*>(allocate_array<unsigned char>(int64_t(size)));
  if (!fresh) return KOB_ERROR_MEM_FAILURE;
  *fresh = {id, 1, 0};
  *stream = fresh;
  return KOB_STATUS_OK;
}

ORX_API int __kobNewStreamEx(KobStream** stream, uint32_t id, int n, const uint32_t params[]) {
  if (is_abstract(id)) return KOB_ERROR_BRNG_INDEX;
  uint32_t index, offset;
  const KobBrngProperties* table = __kobGetBrngBaseOffset(id, &index, &offset);
  const int status = __kobAllocateStream(stream, table, id, index, offset);
  return status == KOB_STATUS_OK ? table[index].InitStream(0, *stream, n, params) : status;
}

ORX_API int __kobDeleteStream(KobStream** stream) {
  if (*stream) {
    __kobDeleteChunks(*stream);
    free_array(*stream);
  }
  return KOB_STATUS_OK;
}

ORX_API int __kobCopyStream(KobStream** stream, const KobStream* source) {
  uint32_t index, offset;
  const KobBrngProperties* table = __kobGetBrngBaseOffset(source->BrngId, &index, &offset);
  KobStream* fresh;
  int status = __kobAllocateStream(&fresh, table, source->BrngId, index, offset);
  if (status != KOB_STATUS_OK) return status;
  memcpy(fresh, source, sizeof(KobStream) + state_bytes(table[index]));
  fresh->Chunks = 0;
  status = __kobCopyChunks(fresh, source);
  if (status == KOB_STATUS_OK)
    *stream = fresh;
  else
    __kobDeleteStream(&fresh);
  return status;
}

ORX_API int __kobCopyStreamState(KobStream* dest, const KobStream* source) {
  if (dest == source) return KOB_STATUS_OK;
  const KobBrngProperties& from = record(source);
  const size_t moved = std::min(bytes_to_move(dest, source, from), state_bytes(record(dest)));
  memcpy(dest + 1, source + 1, moved);
  __kobDeleteChunks(dest);
  const int status = __kobCopyChunks(dest, source);
  if (moved == 0 || adopt(dest)) return status;
  // A position without the chunks that it needs, or of another generator, would lead outside the state.
  record(dest).InitStream(0, dest, 0, nullptr);
  return status == KOB_STATUS_OK ? KOB_ERROR_BAD_ARG : status;
}

ORX_API int __kobLeapfrogStream(KobStream* stream, uint32_t k, int nstreams) {
  if (nstreams < 0) return KOB_ERROR_LEAPFROG_NSTREAMS;
  return record(stream).InitStream(1, stream, nstreams, &k);
}

ORX_API int __kobSkipAheadStream(KobStream* stream, uint64_t nskip) {
  const uint32_t words[2] = {uint32_t(nskip), uint32_t(nskip >> 32)};
  return record(stream).InitStream(2, stream, 2, words);
}

ORX_API int __kobGetStreamStateBrng(const KobStream* stream) { return int(stream->BrngId); }
