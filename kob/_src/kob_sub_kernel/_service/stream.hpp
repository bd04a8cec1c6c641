// A stream as it lies in memory.
#pragma once

#include <cstdint>

#include "orx/base/api.hpp"
#include "orx/kob.h"

namespace orx::brng {

static_assert(sizeof(KobStream) == 16);
#if defined(__i386__)
static_assert(sizeof(KobChunk) == 32 && sizeof(KobBrngProperties) == 36);
#endif

constexpr uint32_t kNewIds = 0x100000;  // ids below are the older numbering

// The head of the list of chunks.
inline KobChunk* chunks(const KobStream* stream) {
  return reinterpret_cast<KobChunk*>(static_cast<uintptr_t>(stream->Chunks));
}

}  // namespace orx::brng
