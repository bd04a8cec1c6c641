// The special points of Atan2, and of Arg.
#pragma once
#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr double kPi = 0x1.921fb54442d18p+1;

// C99, annex F.9.1.4: y, x and the angle.
inline const std::vector<Special> kAngles = {{{0, 0}, 0},
                                             {{-0.0, 0}, -0.0},
                                             {{0, -0.0}, kPi},
                                             {{-0.0, -0.0}, -kPi},
                                             {{0, 1}, 0},
                                             {{-0.0, 1}, -0.0},
                                             {{0, -1}, kPi},
                                             {{-0.0, -1}, -kPi},
                                             {{1, 0}, kPi / 2},
                                             {{1, -0.0}, kPi / 2},
                                             {{-1, 0}, -kPi / 2},
                                             {{-1, -0.0}, -kPi / 2},
                                             {{1, kInf}, 0},
                                             {{-1, kInf}, -0.0},
                                             {{1, -kInf}, kPi},
                                             {{-1, -kInf}, -kPi},
                                             {{kInf, 1}, kPi / 2},
                                             {{-kInf, kLargest}, -kPi / 2},
                                             {{kInf, -kLargest}, kPi / 2},
                                             {{kInf, kInf}, kPi / 4},
                                             {{-kInf, kInf}, -kPi / 4},
                                             {{kInf, -kInf}, 3 * kPi / 4},
                                             {{-kInf, -kInf}, -3 * kPi / 4},
                                             {{kLargest, kLargest}, kPi / 4},
                                             {{kLargest, kLeast}, kPi / 2},
                                             {{kLeast, kLargest}, 0, StatusOk, kAllClasses, FE_UNDERFLOW},
                                             {{kLeast, kLeast}, kPi / 4},
                                             {{kLeast, -kLeast}, 3 * kPi / 4},
                                             {{kLeast, -kLargest}, kPi},
                                             {{-kLeast, 1}, -kLeast},
                                             {{kSmallest, 1}, kSmallest},
                                             {{kNaN, 1}, kNaN},
                                             {{1, kNaN}, kNaN},
                                             {{kNaN, kNaN}, kNaN},
                                             {{kInf, kNaN}, kNaN},
                                             {{kNaN, 0}, kNaN}};
