#include "_heap/real/turns.hpp"

namespace orx::tef {

alignas(64) const double kTurns[1024][6] = {
#include "_heap/real/turns_d.inc"
};

alignas(64) const double kSingleTurns[256][2] = {
#include "_heap/real/turns_s.inc"
};

}  // namespace orx::tef
