// What the service knows of chunks beyond their public functions.
#pragma once

#include "_service/stream.hpp"
#include "orx/base/memory.hpp"

namespace orx::brng {

enum ChunkKind : uint32_t {
  kChunkBoxMuller2Single = 1,
  kChunkBoxMuller2Double = 2,
  kChunkPoisson = 3,
  kChunkNegativeBinomial = 4,
  kChunkBinomial = 5,
  kChunkHypergeometric = 6,
  kChunkGammaDouble = 7,
  kChunkGammaSingle = 8,
  kChunkSobolDirections = 9,
  kChunkNiederrDirections = 10,
  kChunkSfmtWords32 = 11,
  kChunkSfmtWords64 = 12,
  kChunkSobolPoint = 13,
};

// The stream's first chunk of that kind, null when there is none.
const KobChunk* find_chunk(const KobStream* stream, uint32_t kind);

// The data of the stream's chunk of that kind; when there is none, a new one filled with zeros.
int find_or_add_chunk(KobStream* stream, ChunkKind kind, uint32_t size, void** data);

// Adds a chunk of `data`. The stream takes the block over, unless it has a name that the process knows: then
// the chunk shares what is there. What the stream does not take is freed.
template <class T>
int give_chunk(KobStream* stream, uint32_t kind, const KobGlobalId* name, Block<T> data, uint32_t size) {
  const int status = __kobAddChunk(stream, kind, name, data.get(), size);
  if (status == KOB_STATUS_OK && chunks(stream)->Data == data.get()) static_cast<void>(data.release());
  return status;
}

// The same for a chunk that was loaded. A block of the chunk's name may be another one here: a name says where
// a block was made, not what has become of the image since. Then the chunk keeps its own block, without a name.
int give_loaded_chunk(KobStream* stream, uint32_t kind, const KobGlobalId& name, Block<unsigned char> data,
                      uint32_t size);

}  // namespace orx::brng
