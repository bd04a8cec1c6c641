// The registry as the service sees it.
#pragma once

#include <cstddef>

#include "_service/stream.hpp"

namespace orx::brng {

constexpr uint32_t kSlots = 512;

template <class Value>
struct Slots {
  Value row[kSlots];
};

extern "C" Slots<KobBrngProperties> __RegBrngsNew;

constexpr uint32_t kFamilies = 14;  // rows that are built in
constexpr uint32_t kLegacyRows = 279;

// The row of a stream that was made: its id is a valid one.
inline const KobBrngProperties& record(const KobStream* stream) {
  if (stream->BrngId >= kNewIds) return __RegBrngsNew.row[(stream->BrngId >> 20) - 1];
  uint32_t index, offset;
  const KobBrngProperties* table = __kobGetBrngBaseOffset(stream->BrngId, &index, &offset);
  return table[index];
}

// Bytes behind the header. A registered generator may ask for less than the header's own 16.
inline size_t state_bytes(const KobBrngProperties& record) {
  constexpr int header = sizeof(KobStream);
  return record.StateSize > header ? record.StateSize - header : 0;
}

// The row of the stream's family in the family table, also for the older numbering.
uint32_t family_row(const KobStream* stream);

// Whether a stream that was loaded may be used: asks its generator.
bool adopt(KobStream* stream);

}  // namespace orx::brng
