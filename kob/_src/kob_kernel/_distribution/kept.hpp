// What a distribution keeps in the stream from one call to the next.
#pragma once

#include "_service/chunks.hpp"

namespace orx::rng {

// The stream's chunk of that kind as a Record; when there is none, a new one holding `fresh`.
template <class Record>
int keep(KobStream* stream, orx::brng::ChunkKind kind, const Record& fresh, Record** kept) {
  if (const KobChunk* found = orx::brng::find_chunk(stream, kind)) {
    *kept = static_cast<Record*>(found->Data);
    return KOB_STATUS_OK;
  }
  void* data;
  const int status = orx::brng::find_or_add_chunk(stream, kind, sizeof(Record), &data);
  if (status != KOB_STATUS_OK) return status;
  *kept = static_cast<Record*>(data);
  **kept = fresh;
  return KOB_STATUS_OK;
}

}  // namespace orx::rng
