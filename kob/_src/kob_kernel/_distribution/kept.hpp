// What a distribution keeps in the stream from one call to the next.
#pragma once

#include "_service/chunks.hpp"

namespace orx::rng {

// The stream's chunk of that kind as a Record; when there is none, a new one holding `fresh`.
template <class Record>
int keep(KobStream* stream, orx::brng::ChunkKind kind, const Record& fresh, Record** kept) {
  const bool found = orx::brng::find_chunk(stream, kind) != nullptr;
  void* data;
  const int status = orx::brng::find_or_add_chunk(stream, kind, sizeof(Record), &data);
  if (status != KOB_STATUS_OK) return status;
  *kept = static_cast<Record*>(data);
  if (!found) **kept = fresh;
  return KOB_STATUS_OK;
}

}  // namespace orx::rng
