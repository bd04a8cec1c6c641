// What the service knows of chunks beyond their public functions.
#pragma once

#include "_service/stream.hpp"
#include "orx/serv.h"

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

inline void* allocate(size_t size) { return orx_serv_allocate(size, 128); }

// The stream's first chunk of that kind, null when there is none.
const KobChunk* find_chunk(const KobStream* stream, uint32_t kind);

// The data of the stream's chunk of that kind; when there is none, a new one filled with zeros.
int find_or_add_chunk(KobStream* stream, ChunkKind kind, uint32_t size, void** data);

}  // namespace orx::brng
