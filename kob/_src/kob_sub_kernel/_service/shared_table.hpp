// The process's table of read-only blocks that several streams share.
#pragma once

#include "kob_sub_kernel/_service/stream.hpp"

namespace orx::brng {

inline bool is_named(const KobGlobalId& id) { return id.Word[0] | id.Word[1] | id.Word[2] | id.Word[3]; }

// Whether the table has the name; *size is the block's size, 0 when it was not told.
bool find_shared(const KobGlobalId& id, uint32_t* size);

// Enters a chunk's block and its size under the chunk's name, unless the table is down to its last place.
int enter_shared(KobChunk* chunk);

inline bool is_shared(const KobGlobalId& id) {
  uint32_t size;
  return find_shared(id, &size);
}

}  // namespace orx::brng
