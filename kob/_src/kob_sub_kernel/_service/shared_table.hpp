// The process's table of read-only blocks that several streams share.
#pragma once

#include "_service/stream.hpp"

namespace orx::brng {

inline bool is_named(const KobGlobalId& id) { return id.Word[0] | id.Word[1] | id.Word[2] | id.Word[3]; }

// Whether the table has the name.
bool is_shared(const KobGlobalId& id);

// The size of the block of that name, 0 when it was not told or there is none.
uint32_t shared_size(const KobGlobalId& id);

// A chunk with a name gets the block that the table has under it, or enters its own. The table keeps its last
// place free: a name that finds it so full is taken from the chunk, whose block is then private.
void share(KobChunk* chunk);

}  // namespace orx::brng
