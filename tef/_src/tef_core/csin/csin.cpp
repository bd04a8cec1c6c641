// sin z.
#include "_complex/waves_of_doubles.hpp"
#include "_complex/waves_of_singles.hpp"

ORX_WAVES(Sin, csin, OddTurned, SinhByWaves, kMost)
