// A sequence in which each state follows from the one before it, and its cycle.
#pragma once

#include <cstdint>

namespace orx::ss::out_detect {

// Finds that a sequence of sets goes in circles (Brent 1980), sees it through one whole circle, and then stops it at
// the largest set of the circle.
class Cycle {
 public:
  // Tells of the next set, by a number that stands for it, and of its size. True where the sequence is to stop.
  bool stops_at(uint64_t set, int size) {
    if (to_see_ == kNoCycle) {
      ++steps_;
      if (set != kept_) {
        if (steps_ == patience_) {
          kept_ = set;
          patience_ *= 2;
          steps_ = 0;
        }
        return false;
      }
      to_see_ = steps_;
    } else if (to_see_ > 0) {
      --to_see_;
    }
    if (size > largest_) largest_ = size;
    return to_see_ == 0 && size == largest_;
  }

 private:
  static constexpr int64_t kNoCycle = -1;
  uint64_t kept_ = 0;
  int64_t steps_ = 0, patience_ = 1;
  int64_t to_see_ = kNoCycle;  // sets of the circle that are not seen yet
  int largest_ = 0;
};

}  // namespace orx::ss::out_detect
