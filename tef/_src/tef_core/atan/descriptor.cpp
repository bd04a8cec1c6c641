#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr double kQuarter = 0x1.921fb54442d18p+0;

static const Entry kEntry{{
    .name = "Atan",
    .computes = "atan x, from -pi/2 to pi/2",
    .method = "the nearest of 17 angles by a table, and a polynomial for what is left",
    .c_name = "atan",
    .specials = {{0, 0},
                 {-0.0, -0.0},
                 {kLeast, kLeast},
                 {-kSmallest, -kSmallest},
                 {1, kQuarter / 2},
                 {kLargest, kQuarter},
                 {-kLargest, -kQuarter},
                 {kInf, kQuarter},
                 {-kInf, -kQuarter},
                 {kNaN, kNaN}},
    .strata = {multiples({1.0 / 32}, -1, 1), around({0x1p-120, 0x1p60, 1, 2, 16, 32, 1e7, 1e16})},
    .s = {.bounds = {.la = 2.5, .ha = 0.51}, .timed = {-10, 10}, .approximate = kHA},
    .d = {.bounds = {.la = 1.7, .ha = 0.53, .ep = 65536},
          .timed = {-10, 10},
          .strata = {logarithmic(0x1p-30, 0x1p60)},
          .approximate = kAllClasses},
}};
