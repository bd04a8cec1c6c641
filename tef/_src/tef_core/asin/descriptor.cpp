#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr double kQuarter = 0x1.921fb54442d18p+0;

static const Entry kEntry{{
    .name = "Asin",
    .computes = "asin x, from -pi/2 to pi/2",
    .method = "a polynomial, of the square root of (1 - |x|)/2 where |x| is above 1/2",
    .c_name = "asin",
    .domain = "|x| <= 1",
    .errors = {{StatusDomain, "|x| > 1"}},
    .specials = {{0, 0},
                 {-0.0, -0.0},
                 {kLeast, kLeast},
                 {-kSmallest, -kSmallest},
                 {1, kQuarter},
                 {-1, -kQuarter},
                 {0.5, kQuarter / 3},
                 {1.0000002, kNaN, StatusDomain},
                 {-2, kNaN, StatusDomain},
                 {kLargest, kNaN, StatusDomain},
                 {kInf, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {kNaN, kNaN}},
    .strata = {even(-1, 1), around({0.5, -0.5, 0x1p-60})},
    .s = {.bounds = {.la = 2.5, .ha = 0.65},
          .timed = {-1, 1},
          .strata = {around({0x1p-40})},
          .approximate = kHA},
    .d = {.bounds = {.la = 2.4, .ha = 0.68, .ep = 0x1p26},
          .timed = {-1, 1},
          .strata = {logarithmic(0x1p-60, 1)},
          .approximate = kHA},
}};
