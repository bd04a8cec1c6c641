#include "_heap/real/turns.hpp"

namespace orx::tef {

alignas(64) const uint64_t kTurns[2048][3] = {
#include "_heap/real/turns_d.inc"
};

alignas(64) const uint32_t kSingleTurns[256][3] = {
#include "_heap/real/turns_s.inc"
};

}  // namespace orx::tef
