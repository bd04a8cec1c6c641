// What must hold of a chunk that was loaded before a generator may use it.
#pragma once

#include "_service/chunks.hpp"

namespace orx::brng {

// Whether the stream may get this chunk: it is the stream's first of its kind, long enough for it, and holds
// nothing that would lead outside its own data. Where a length or a content hangs on the stream's state, the
// generator's adopt() checks. Kinds that nobody here knows belong to registered generators and are theirs to
// check.
bool is_sound(const KobStream* stream, const KobChunk& chunk);

// What a distribution has set up is believed without a look. One that was loaded loses the parameters that it was made for,
// so that it is made anew.
void forget_set_up(uint32_t kind, void* data);

}  // namespace orx::brng
